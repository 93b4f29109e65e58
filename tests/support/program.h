// Runs the program itself, as a user's command line does.
#pragma once

#include "support/files.h"

#include <gtest/gtest.h>

#include <regex>
#include <string>

constexpr const wchar_t *installedProgram = L"X:\\suite\\bin\\win64\\kxDeleteOldFiles.exe";

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
    std::string output; // of standard output behind the banner, each CR LF as one line feed
};

/// Starts the program, that of the sample installation if nothing else is said, with these
/// arguments, in which quoting is the caller's, and without the variables that it looks at.
/// Standard output is a pipe, or the handle that is given, which is closed here.
inline RunningProgram startProgram(const std::wstring &arguments,
                                   const std::wstring &program = installedProgram,
                                   HANDLE standardOutput = nullptr)
{
    clearVariables();
    RunningProgram running = {};
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = standardOutput;
    if (standardOutput == nullptr)
        CreatePipe(&running.output, &startup.hStdOutput, nullptr, 0);
    SetHandleInformation(startup.hStdOutput, HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
    std::wstring commandLine = program + L" " + arguments;
    const auto create = [&] {
        return CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0,
                              nullptr, nullptr, &startup, &running.process);
    };
    // Wine cannot, once in some thousand times, before the program has begun.
    EXPECT_TRUE(create() || create()) << GetLastError();
    CloseHandle(startup.hStdOutput);
    return running;
}

/// Waits for its end, and looks for the banner. The number of free MiB, which others change too,
/// reads "#" in the output, unless it is the 1000 that stands for an unknown one.
inline ProgramRun waitFor(const RunningProgram &running)
{
    ProgramRun run = {};
    char buffer[4096];
    for (DWORD count = 0; ReadFile(running.output, buffer, sizeof buffer, &count, nullptr) != 0;)
        run.output.append(buffer, count);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(running.process.hProcess, 60000));
    GetExitCodeProcess(running.process.hProcess, &run.exitCode);
    for (const HANDLE handle :
         { running.process.hThread, running.process.hProcess, running.output })
        CloseHandle(handle);
    const std::regex banner(
        "^(\\.-{64})\r\n\\. kxDeleteOldFiles  8\\.4\\.02\r\n"
        "\\. Deletes old files and subfolders that are left empty\\.\r\n\\1\r\n");
    EXPECT_TRUE(running.output == nullptr || std::regex_search(run.output, banner)) << run.output;
    EXPECT_FALSE(std::regex_search(run.output, std::regex("(^|[^\r])\n"))) << "a bare line feed";
    const std::regex freeSpace(
        "(  Done. Free drive space in .* is )(?!1000 MiB)[0-9][0-9 ]*( MiB\r\n\r\n)");
    run.output = std::regex_replace(run.output, banner, "");
    run.output = std::regex_replace(run.output, freeSpace, "$1#$2");
    run.output = std::regex_replace(run.output, std::regex("\r\n"), "\n");
    return run;
}

inline ProgramRun runProgram(const std::wstring &arguments,
                             const std::wstring &program = installedProgram)
{
    return waitFor(startProgram(arguments, program));
}
