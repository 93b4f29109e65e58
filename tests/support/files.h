// Real files and folders for the tests.
#pragma once

#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

using Tree = std::vector<std::wstring>;

constexpr double old = 30; // days, twice the default limit
constexpr double young = 1;

/// A folder of its own on the scratch drive, empty at first and removed with all in it.
struct ScratchFolder
{
    ScratchFolder() { fs::create_directories(path); }
    ~ScratchFolder()
    {
        std::error_code ignored; // a failed assertion may have left what it cannot reach
        for (const fs::directory_entry &entry : fs::recursive_directory_iterator(path, ignored))
            SetFileAttributesW(entry.path().c_str(), FILE_ATTRIBUTE_NORMAL);
        fs::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    const fs::path path = L"X:\\scratch";
};

/// Makes a file, last written so many days ago, and the folders above it.
inline void makeFile(const fs::path &path, double daysOld, int bytes = 0,
                     DWORD attributes = FILE_ATTRIBUTE_NORMAL)
{
    fs::create_directories(path.parent_path());
    std::fclose(_wfopen(path.c_str(), L"wb"));
    fs::resize_file(path, static_cast<std::uintmax_t>(bytes));
    const std::chrono::duration<double> age(daysOld * 24 * 3600);
    fs::last_write_time(path, fs::file_time_type::clock::now()
                                  - std::chrono::duration_cast<std::chrono::seconds>(age));
    SetFileAttributesW(path.c_str(), attributes);
}

/// The paths below a folder, relative to it and sorted.
inline Tree treeOf(const fs::path &folder)
{
    Tree paths;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
        paths.push_back(entry.path().wstring().substr(folder.wstring().size() + 1));
    std::sort(paths.begin(), paths.end());
    return paths;
}

/// What a function has put into standard output so far, not counting what the C library still
/// holds.
template <typename Function>
std::string flushedBy(Function function)
{
    std::fflush(stdout);
    const int output = _dup(1);
    const int file = _wopen(L"X:\\flushed", _O_CREAT | _O_TRUNC | _O_RDWR | _O_BINARY, _S_IWRITE);
    _dup2(file, 1);
    function();
    std::string text(static_cast<std::size_t>(_filelength(file)), ' ');
    _lseek(file, 0, SEEK_SET);
    _read(file, text.data(), static_cast<unsigned>(text.size()));
    std::fflush(stdout);
    _dup2(output, 1);
    _close(output);
    _close(file);
    return text;
}

/// The system's message for a code, without the line break at its end.
inline std::string systemMessage(DWORD code)
{
    char message[500];
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, message,
                                        sizeof message, nullptr);
    return std::string(message, length).substr(0, std::string(message, length).find("\r\n"));
}
