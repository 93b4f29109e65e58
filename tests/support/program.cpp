#include "support/program.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <regex>

namespace {

constexpr DWORD longestRun = 60000; // in milliseconds

std::string readAll(HANDLE pipe)
{
    std::string bytes;
    char buffer[4096];
    DWORD count = 0;
    while (ReadFile(pipe, buffer, sizeof buffer, &count, nullptr) != 0)
        bytes.append(buffer, count);
    return bytes;
}

} // namespace

RunningProgram startProgram(const std::wstring &arguments, const std::wstring &program,
                            HANDLE standardOutput)
{
    for (const wchar_t *variable :
         { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramFiles", L"ProgramW6432", L"SystemDrive" })
        SetEnvironmentVariableW(variable, nullptr);
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

ProgramRun waitFor(const RunningProgram &running)
{
    const std::string bytes = readAll(running.output);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(running.process.hProcess, longestRun));
    ProgramRun run = { 0, std::regex_replace(bytes, std::regex("\r\n"), "\n") };
    EXPECT_EQ(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')),
              bytes.size() - run.output.size())
        << "each line feed has its carriage return";
    run.output = std::regex_replace(
        run.output,
        std::regex("(  Done. Free drive space in .* is )(?!1000 )[0-9][0-9 ]*( MiB\n\n)"), "$1#$2");
    GetExitCodeProcess(running.process.hProcess, &run.exitCode);
    for (const HANDLE handle :
         { running.process.hThread, running.process.hProcess, running.output })
        CloseHandle(handle);
    return run;
}

ProgramRun runProgram(const std::wstring &arguments, const std::wstring &program)
{
    return waitFor(startProgram(arguments, program));
}
