@echo off
rem Runs kxDeleteOldFiles and appends the date, the command and the report to a log. Ends with the
rem program's exit code; with 2 when the report lists errors; with 4 when the log cannot be written.
rem This file belongs in the installation's folder bin\win64 or job.
setlocal EnableExtensions DisableDelayedExpansion

rem Set these two lines, in ASCII letters and with %% for a %. "arguments" are those of the program,
rem such as -do 14 "C:\render jobs\temp". Arguments given to this file replace them.
set arguments=
set "log=%LOCALAPPDATA%\kxDeleteOldFiles\clean_old_files.log"
rem Only administrators and the account of the job may be able to write to the folders of the log
rem and of this file.

if not "%~1"=="" set arguments=%*
set "program=%~dp0kxDeleteOldFiles.exe"
if not exist "%program%" set "program=%~dp0..\bin\win64\kxDeleteOldFiles.exe"
for %%f in ("%log%") do if not exist "%%~dpf" mkdir "%%~dpf"

rem The report of this run waits in its own file. Another run with the same log holds it open.
set "report=%log%.report"
if exist "%report%" del "%report%"
if exist "%report%" goto no_log
>>"%log%" echo %date% %time% "%program%" %arguments%
if not exist "%program%" echo There is no such program, nor one beside this file.>>"%log%"& exit /b 1
>"%report%" "%program%" %arguments%
set code=%errorlevel%
"%SystemRoot%\System32\find.exe" "Errors:" <"%report%" >nul
if not errorlevel 1 set code=2
copy /y /b "%log%"+"%report%" "%log%" >nul
if errorlevel 1 goto no_log
del "%report%"
exit /b %code%

:no_log
echo The log "%log%" cannot be written, or another run uses it.
exit /b 4
