' Opens a file without sharing it, says so, and goes on until it is killed.
Set file = CreateObject("Scripting.FileSystemObject").OpenTextFile(WScript.Arguments(0))
WScript.Echo "held"
Do: Loop
