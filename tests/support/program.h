// Runs the program itself, as a user's command line does.
#pragma once

#include <windows.h>

#include <string>

/// A run that is under way.
struct RunningProgram
{
    PROCESS_INFORMATION process;
    HANDLE output; // to read from, or null
};

/// What one run left behind.
struct ProgramRun
{
    unsigned long exitCode;
    std::string output; // of standard output, each CR LF as one line feed
};

constexpr const wchar_t *installedProgram = L"X:\\suite\\bin\\win64\\kxDeleteOldFiles.exe";

/// Starts the program, that of the sample installation if nothing else is said, with these
/// arguments, in which quoting is the caller's, and without the variables that it looks at.
/// Standard output is a pipe, or the handle that is given, which is closed here.
RunningProgram startProgram(const std::wstring &arguments,
                            const std::wstring &program = installedProgram,
                            HANDLE standardOutput = nullptr);

/// Waits for its end. The number of free MiB, which other programs change, reads "#" in the output,
/// unless it is the 1000 that stands for an unknown one.
ProgramRun waitFor(const RunningProgram &running);

/// Both in one.
ProgramRun runProgram(const std::wstring &arguments,
                      const std::wstring &program = installedProgram);
