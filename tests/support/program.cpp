#include "support/program.h"

#include <gtest/gtest.h>

#include <windows.h>

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

ProgramRun runProgram(const std::wstring &arguments, const std::wstring &program)
{
    for (const wchar_t *variable :
         { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramFiles", L"ProgramW6432", L"SystemDrive" })
        SetEnvironmentVariableW(variable, nullptr);
    SECURITY_ATTRIBUTES inherited = { sizeof inherited, nullptr, TRUE };
    HANDLE readEnd = nullptr;
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    CreatePipe(&readEnd, &startup.hStdOutput, &inherited, 0);
    PROCESS_INFORMATION process = {};
    std::wstring commandLine = program + L" " + arguments;
    EXPECT_TRUE(CreateProcessW(program.c_str(), commandLine.data(), nullptr, nullptr, TRUE, 0,
                               nullptr, nullptr, &startup, &process));
    CloseHandle(startup.hStdOutput);
    const std::string bytes = readAll(readEnd);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(process.hProcess, longestRun));
    ProgramRun run = { 0, std::regex_replace(bytes, std::regex("\r\n"), "\n") };
    EXPECT_EQ(static_cast<std::size_t>(std::count(bytes.begin(), bytes.end(), '\n')),
              bytes.size() - run.output.size())
        << "each line feed has its carriage return";
    run.output = std::regex_replace(
        run.output,
        std::regex("(  Done. Free drive space in .* is )(?!1000 )[0-9][0-9 ]*( MiB\n\n)"), "$1#$2");
    GetExitCodeProcess(process.hProcess, &run.exitCode);
    for (const HANDLE handle : { process.hThread, process.hProcess, readEnd })
        CloseHandle(handle);
    return run;
}
