@echo off
rem Shows the program at work on a small tree in a new folder below %TEMP%, checks what is left, and removes
rem the folder. It touches nothing outside that folder. It ends with 0 when the program works on this
rem machine. Otherwise each reason is a line that begins with "Differs:", and it ends with 1. This file
rem belongs in the installation's folder bin\win64 or job.
rem
rem Before the program runs, this file waits for a key; "try_it <nul" does not wait. After Ctrl-C there,
rem remove the folder kx_try_... in %TEMP%.
rem
rem In the tree, "old" files and folders must be deleted, and those that begin with "keep" must stay. What
rem this machine cannot make is left out and named. Wine's PowerShell does nothing, and Wine makes no
rem junction. So only Windows can show that the files become old, that the name with umlauts is deleted, that
rem the program follows the junction, and that rd removes the junction and not what it leads to.
setlocal EnableExtensions DisableDelayedExpansion

set "program=%~dp0kxDeleteOldFiles.exe"
if not exist "%program%" set "program=%~dp0..\bin\win64\kxDeleteOldFiles.exe"
if not exist "%program%" echo Differs: there is no program beside this file or in bin\win64.& exit /b 1

rem The Temp folder of SYSTEM is one that users can write to. A user could put a link into the tree there, and
rem the program would follow it. Elsewhere, start this file with a TEMP that only you can write to.
if "%TEMP%"=="" echo Differs: the variable TEMP is missing.& exit /b 1
if not exist "%TEMP%\" echo Differs: there is no folder "%TEMP%".& exit /b 1
for %%f in ("%TEMP%\.") do set "TEMP=%%~ff"
if /i "%TEMP%"=="%SystemRoot%\Temp" echo Differs: users can write to "%TEMP%".& exit /b 1

rem mkdir fails when its folder exists. So the folder that is removed at the end is one that was made here.
set "trial=%TEMP%\kx_try_%RANDOM%_%RANDOM%"
mkdir "%trial%"
if errorlevel 1 echo Differs: the folder "%trial%" cannot be made.& exit /b 1
set "swept=%trial%\swept"
set "differs=%trial%\differs.txt"
set works=yes

rem The file beside the swept folder is old, too, but must stay.
mkdir "%swept%\keep folder" "%swept%\old folder\old empty folder" "%trial%\linked"
for %%f in ("keep.txt" "old.txt" "old hidden.txt" "old read-only.txt") do type nul >"%swept%\%%~f"
for %%f in ("keep.txt" "old.txt") do type nul >"%swept%\keep folder\%%~f"
type nul >"%trial%\keep, because it is beside the swept folder, old.txt"
set old_files=4

rem The program follows links: it must delete the old file that this one leads to.
mklink /J "%swept%\keep link" "%trial%\linked" >nul 2>&1
if exist "%swept%\keep link" for %%f in (keep old) do type nul >"%trial%\linked\%%f.txt"
if exist "%swept%\keep link" (set /a old_files+=1) else echo Left out: a junction.

rem cmd makes no path over 260 characters, but it moves one half of such a path into the other.
set "half=1234567890123456789012345678901234567890123456789012345678901234567890"
set "half=%half%%half:~0,50%"
mkdir "%swept%\old long path\%half%" "%trial%\move\%half%"
type nul >"%trial%\move\%half%\very old.txt"

rem PowerShell makes a name with umlauts, and makes each file with "old" in its name 30 days old.
"%SystemRoot%\System32\WindowsPowerShell\v1.0\powershell.exe" -NoProfile -NonInteractive -Command ^
  "$ErrorActionPreference = 'Stop';" ^
  "$file = $env:swept + '\old umlauts ' + [char]228 + [char]246 + [char]252 + '.txt';" ^
  "New-Item -ItemType File -Path $file | Out-Null;" ^
  "Get-ChildItem -LiteralPath $env:trial -Recurse -Filter *old*.txt |" ^
  "Set-ItemProperty -Name LastWriteTime -Value ((Get-Date).AddDays(-30))" <nul
if errorlevel 1 echo Differs: PowerShell cannot make files old.& set works=& goto remove
if exist "%swept%\old umlauts *.txt" (set /a old_files+=1) else echo Left out: a name with umlauts.
"%SystemRoot%\System32\attrib.exe" +h "%swept%\old hidden.txt"
"%SystemRoot%\System32\attrib.exe" +r "%swept%\old read-only.txt"

rem dir may stop at a path that is too long for it. So it lists what must go and what must stay before that
rem path is made. Of the long path, the list has the first folder.
dir /s /b /a "%trial%\old*" >"%trial%\go.txt"
dir /s /b /a "%trial%\keep*" >"%trial%\stay.txt"
move "%trial%\move" "%swept%\old long path\%half%" >nul
if exist "%swept%\old long path\%half%\move" (set /a old_files+=1) else echo Left out: a long path.

echo The tree (Windows may say in it that a directory name is too long; that is expected):
dir /s /b /a "%swept%"
echo The program now cleans the folder "%swept%".
pause
"%program%" "%swept%" -do 14 -v >"%trial%\report.txt" 2>&1
set code=%errorlevel%
type "%trial%\report.txt"
echo.
echo What is left:
dir /s /b /a "%swept%"

if not "%code%"=="0" echo Differs: the program ended with exit code %code%.& set works=& goto remove

rem The program takes the directory in the system's code page and reads it as Latin-1. When that changes a
rem letter, it finds no folder.
set "find=%SystemRoot%\System32\find.exe"
"%find%" "Warning: directory " <"%trial%\report.txt" >nul
if errorlevel 1 goto compare
echo Differs: the program cannot take the name of this folder.
echo Set TEMP to a folder with an ASCII name.
set works=
goto remove

:compare
for /f "usebackq delims=" %%f in ("%trial%\go.txt") do ^
  if exist "%%f" echo Differs: %%f is left.>>"%differs%"
for /f "usebackq delims=" %%f in ("%trial%\stay.txt") do ^
  if not exist "%%f" echo Differs: %%f is gone.>>"%differs%"
"%find%" "  %old_files% files deleted (" <"%trial%\report.txt" >nul
if errorlevel 1 echo Differs: the report does not say that %old_files% files were deleted.>>"%differs%"
if exist "%differs%" type "%differs%"& set works=

:remove
rem First the link, by a plain rd, which removes no more than the link; and the long path in its two halves.
if exist "%swept%\keep link" rd "%swept%\keep link"
if exist "%swept%\old long path\%half%\move" move "%swept%\old long path\%half%\move" "%trial%" >nul
rd /s /q "%trial%"
if exist "%trial%" echo Differs: the folder "%trial%" cannot be removed.& set works=
if defined works echo The program works on this machine.& exit /b 0
exit /b 1
