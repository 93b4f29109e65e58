// Runs the program itself, as a user's command line does.
#pragma once

#include <string>

/// What one run left behind.
struct ProgramRun
{
    unsigned long exitCode;
    std::string output; // of standard output, each CR LF as one line feed
};

/// Runs the program of the sample installation with these arguments, in which quoting is the
/// caller's, and standard error closed to it. The number of free MiB, which other programs change,
/// reads "#" in the output.
ProgramRun runProgram(const std::wstring &arguments);
