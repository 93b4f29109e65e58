// Runs the program itself, as a user's command line does.
#pragma once

#include <string>

/// What one run left behind.
struct ProgramRun
{
    unsigned long exitCode;
    std::string output; // of standard output, each CR LF as one line feed
};

/// Runs the program, that of the sample installation if nothing else is said, with these arguments,
/// in which quoting is the caller's, and without the variables that it looks at. The number of free
/// MiB, which other programs change, reads "#" in the output, unless it is the 1000 that
/// stands for an unknown one.
ProgramRun runProgram(const std::wstring &arguments,
                      const std::wstring &program = L"X:\\suite\\bin\\win64\\kxDeleteOldFiles.exe");
