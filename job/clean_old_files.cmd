@echo off
rem Runs kxDeleteOldFiles and appends the date, the command and the report to a log. This file belongs in
rem the installation's folder bin\win64 or job. Exit codes:
rem     0  a folder was swept without errors
rem     1  no program, no installation, the program was ended, or Windows blocks it; the log says which
rem     2  the report lists errors
rem     4  the log cannot be written, another run uses it, or the variable LOCALAPPDATA is missing
rem     5  the program ended with 0, but its report starts no folder, so nothing was swept
rem Any other code is the program's own: 3 when the days are not a whole 32-bit number, -1 for too few
rem arguments.
setlocal EnableExtensions DisableDelayedExpansion

rem Without this variable the lines below could name \Temp of whatever drive is the current one.
if "%LOCALAPPDATA%"=="" echo The variable LOCALAPPDATA is missing. Nothing was run.& exit /b 4

rem Set these two lines. "arguments" are those of the program, when this file is given none, for instance
rem     set arguments=-v -do 14 "C:\scratch"
rem Put each path in quotation marks: without them, the path X:\R&D ends at the & and cmd runs a command D.
rem Use ASCII letters. %NAME% is a variable; write %% for a % in a name. Only administrators and the
rem account of the job should be able to write to the log's folder, and only administrators to this file's.
set arguments=
set "log=%LOCALAPPDATA%\kxDeleteOldFiles\clean_old_files.log"

rem Arguments given to this file replace those above, even when the first one is empty.
set given=%*
if defined given set arguments=%given%

set "program=%~dp0kxDeleteOldFiles.exe"
if not exist "%program%" set "program=%~dp0..\bin\win64\kxDeleteOldFiles.exe"
for %%f in ("%log%") do if not exist "%%~dpf" mkdir "%%~dpf"

rem Each run writes its report to its own file and holds it open. So a report that cannot be deleted belongs
rem to a run that goes on, and one that can be deleted to a run that was killed. Only the second replaces
rem LOG.killed, so the report is first copied elsewhere.
set "report=%log%.report"
if not exist "%report%" goto begin
copy /y "%report%" "%report%.copy" >nul && del "%report%"
if exist "%report%" del "%report%.copy"& goto no_log
move /y "%report%.copy" "%log%.killed" >nul

:begin
rem A log of 10,000,000 bytes or more is kept once, as LOG.old.
if exist "%log%" for %%f in ("%log%") do if %%~zf geq 10000000 move /y "%log%" "%log%.old" >nul

rem The command goes to the log before the program starts: nothing is deleted that could not be logged. If
rem that fails, its report is deleted, because the next run would take it for that of a killed run.
if not exist "%log%" type nul >"%log%"
>"%report%" echo %date% %time% "%program%" %arguments%
copy /y /b "%log%"+"%report%" "%log%" >nul
if errorlevel 1 del "%report%"& goto no_log
del "%report%"
if not exist "%program%" echo No program: neither at this path nor beside this file.>>"%log%"& exit /b 1

rem When cmd cannot open the report, because another run has begun just now, it does not start the program,
rem and no code is set.
set code=
call :run >"%report%"
if not defined code goto no_log

rem The program itself ends with 0 after errors, and when the folder does not exist.
set "find=%SystemRoot%\System32\find.exe"
"%find%" "Starting to delete files in folder '" <"%report%" >nul
if errorlevel 1 if %code%==0 set code=5
"%find%" "Errors:" <"%report%" >nul
if not errorlevel 1 if %code%==0 set code=2
copy /y /b "%log%"+"%report%" "%log%" >nul
if errorlevel 1 goto no_log
del "%report%"
exit /b %code%

:no_log
echo The log "%log%" cannot be written, or another run uses it. The last report may be in "%report%".
exit /b 4

:run
"%program%" %arguments% 2>&1
set code=%errorlevel%
exit /b
