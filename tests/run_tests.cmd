@echo off
rem Tests the program on Windows: runs the unit tests, and the batch file and the task's command line with
rem Windows' own cmd. Each line that begins with "Differs:" is a failure. It ends with 0 when there is none,
rem and otherwise with 1. When tests have run, it then names their log. It waits for a key before it ends;
rem "run_tests <nul" does not.

rem Everything happens in a new folder below %TEMP%, which is drive X: until the end. After Ctrl-C, enter
rem "subst X: /D", and remove the folder kx_tests_... in %TEMP%. A caller that has a scratch drive X: sets
rem KX_SCRATCH_DRIVE=X:. What the tests leave there then stays.
setlocal EnableExtensions DisableDelayedExpansion
set passed=
set ran=0

rem Users can write to the Temp folder of SYSTEM. A link that they put there would lead the program elsewhere.
if "%TEMP%"=="" echo Differs: the variable TEMP is missing.& goto end
for %%f in ("%TEMP%\.") do set "TEMP=%%~ff"
if /i "%TEMP%"=="%SystemRoot%\Temp" echo Differs: users can write to "%TEMP%".& goto end
set "name=kx_tests_%RANDOM%_%RANDOM%"
set "folder=%TEMP%\%name%"
set "log=%folder%.log"

if "%KX_SCRATCH_DRIVE%"=="X:" goto lay_out
mkdir "%folder%\%name%"
if errorlevel 1 echo Differs: the folder "%folder%" cannot be made.& goto end
subst X: "%folder%"
if not exist "X:\%name%" rd /s /q "%folder%"& echo Differs: drive X: is taken. Nothing was run.& goto end

:lay_out
set passed=yes
for %%v in (KX_ROOT KX_ROOT_INSTALLER TZ) do set %%v=
set "LOCALAPPDATA=X:\local"
set "joblog=%LOCALAPPDATA%\kxDeleteOldFiles\clean_old_files.log"
set "parent=X:\job (x86) & more !now!"
set "job=%parent%\suite\bin\win64"
set "swept=%parent%\swept"
for %%d in (X:\local "%parent%") do if exist %%d rd /s /q %%d
mkdir X:\unit\bin\win64 "%job%" "%parent%\suite\sub\cfg_global" "%swept%" X:\local\kxDeleteOldFiles
for %%d in (X:\unit\bin\win64 "%job%") do copy "%~dp0*" %%d >nul

cd /d X:\unit\bin\win64
for %%t in (text sweep install) do (
  .\%%t_test.exe >>"%log%" 2>&1
  call :expect 0 "%%t_test"
)

cd /d "%job%"
rem Wine holds a file that is read, Windows one that is written.
for %%f in (file file1 file2) do type nul >"%swept%\%%f"
call :job 2 "the batch file with errors in the report" -do 0 "%swept%" <"%swept%\file1" 2>>"%swept%\file2"
call :job 0 "the batch file with a folder that is swept" -do 0 "%swept%"
if exist "%swept%\file*" echo Differs: a file of the swept folder is left.& set passed=
type nul >"%swept%\file"
call :job 3 "the batch file with days that are no number" -do week "%swept%"
call :job 4 "the batch file with a log that is held open" -do 0 "%swept%" 2>>"%joblog%"
call :job 5 "the batch file with a wrong directory" -do 0 "%parent%\wrong"
call :job 5 "the batch file with a star without a match" -do 0 "%parent%\z*"
call :job -1 "the batch file with too few arguments" -v
if not exist "%swept%\file" echo Differs: a file is gone that no run was to sweep.& set passed=
if exist "%joblog%.killed" echo Differs: a run took the report of another for that of a killed run.& set passed=
.\run_task clean_old_files.xml "C:\Program Files" "%parent%" C:\scratch "%swept%" >>"%log%" 2>&1
call :expect 0 "the command line of the task"
.\run_task clean_old_files.xml "C:\Program Files" "%parent%" " -v -do 14 \"C:\scratch\"" "" >>"%log%" 2>&1
call :expect -1 "the command line of the task without arguments"
type "%joblog%" >>"%log%"

cd /d "%SystemRoot%"
if "%KX_SCRATCH_DRIVE%"=="X:" goto verdict
subst X: /D
rd /s /q "%folder%"
if exist "%folder%" echo Differs: the folder "%folder%" cannot be removed.& set passed=

:verdict
if not "%ran%"=="12" echo Differs: only %ran% of 12 tests passed.& set passed=
if not defined passed echo The log is "%log%".& goto end
del "%log%"
for /f "tokens=3,4 delims=[] " %%v in ('ver') do echo All tests passed on Windows %%v %%w

:end
pause
if defined passed exit /b 0
exit /b 1

rem Runs the batch file in a second cmd with the arguments from the third on, and then expects its exit code.
:job
"%SystemRoot%\System32\cmd.exe" /d /c .\clean_old_files.cmd %3 %4 %5 >>"%log%"

rem Compares the exit code of the command before with the first argument. The second is the name of the test.
:expect
if "%errorlevel%"=="%~1" echo Passed: %~2.& set /a ran+=1 >nul& exit /b
echo Differs: %~2 ended with %errorlevel% instead of %~1.
set passed=
exit /b
