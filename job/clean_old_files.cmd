@echo off
rem Runs kxDeleteOldFiles and appends the date, the command and the report to a log. Ends with the
rem program's exit code; with 2 when the report lists errors; with 1 when there is no program; with 4
rem when the log cannot be written. This file belongs in the installation's folder bin\win64 or job.
setlocal EnableExtensions DisableDelayedExpansion

rem Set these two lines. "arguments" are those of the program, for instance
rem     -do 14 "%LOCALAPPDATA%\Temp"
rem Arguments given to this file replace them. Use ASCII letters. %NAME% is a variable; write %% for a
rem % in a name. Only administrators and the account of the job should be able to write to the log's
rem folder, and only administrators to this file's.
set arguments=
set "log=%LOCALAPPDATA%\kxDeleteOldFiles\clean_old_files.log"

if not "%~1"=="" set arguments=%*
set "program=%~dp0kxDeleteOldFiles.exe"
if not exist "%program%" set "program=%~dp0..\bin\win64\kxDeleteOldFiles.exe"
for %%f in ("%log%") do if not exist "%%~dpf" mkdir "%%~dpf"

rem Each run writes its report to its own file and holds it open. If a run is killed, the next one keeps
rem that file under another name.
set "report=%log%.report"
if exist "%report%" copy /y "%report%" "%log%.killed" >nul
if exist "%report%" del "%report%"
if exist "%report%" goto no_log
if not exist "%log%" type nul >"%log%"
>"%report%" echo %date% %time% "%program%" %arguments%
copy /y /b "%log%"+"%report%" "%log%" >nul
if errorlevel 1 goto no_log
del "%report%"
if not exist "%program%" echo No program: neither at this path nor beside this file.>>"%log%"& exit /b 1

>"%report%" "%program%" %arguments% 2>&1
set code=%errorlevel%
if not exist "%report%" goto no_log
"%SystemRoot%\System32\find.exe" "Errors:" <"%report%" >nul
if not errorlevel 1 set code=2
copy /y /b "%log%"+"%report%" "%log%" >nul
if errorlevel 1 goto no_log
del "%report%"
exit /b %code%

:no_log
echo The log "%log%" cannot be written, or another run uses it. The last report may be in "%report%".
exit /b 4
