// Real files and folders for the tests. A tree is written as one line: paths relative to its
// folder, sorted, with a "|" between them.
#pragma once

#include <fcntl.h>
#include <io.h>
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

namespace fs = std::filesystem;

constexpr double old = 30; // days, twice the default limit
constexpr double young = 1;

/// Makes a file, last written so many days ago, and the folders above it.
inline void makeFile(const fs::path &path, double daysOld = old, std::uintmax_t bytes = 0,
                     DWORD attributes = FILE_ATTRIBUTE_NORMAL)
{
    fs::create_directories(path.parent_path());
    std::fclose(_wfopen(path.c_str(), L"wb"));
    fs::resize_file(path, bytes);
    fs::last_write_time(path, fs::file_time_type::clock::now()
                                  - std::chrono::seconds(static_cast<long long>(daysOld * 86400)));
    SetFileAttributesW(path.c_str(), attributes);
}

/// Clears the variables that the program looks at.
inline void clearVariables()
{
    for (const wchar_t *name :
         { L"KX_ROOT", L"KX_ROOT_INSTALLER", L"ProgramFiles", L"ProgramW6432", L"SystemDrive" })
        _wputenv_s(name, L"");
}

/// Makes a tree of files: young ones where the path says so, old ones otherwise.
inline void makeFiles(const fs::path &folder, const std::wstring &tree)
{
    for (std::size_t from = 0, end = 0; from < tree.size(); from = end + 1) {
        end = std::min(tree.find(L'|', from), tree.size());
        const std::wstring path = tree.substr(from, end - from);
        makeFile(folder / path, path.find(L"young") == std::wstring::npos ? old : young);
    }
}

inline std::wstring treeOf(const fs::path &folder)
{
    std::set<std::wstring> paths;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(folder))
        paths.insert(entry.path().wstring().substr(folder.wstring().size() + 1));
    std::wstring tree;
    for (const std::wstring &path : paths)
        tree += (tree.empty() ? L"" : L"|") + path;
    return tree;
}

/// A folder of its own on the scratch drive, with these files, and removed with all in it.
struct ScratchFolder
{
    explicit ScratchFolder(const std::wstring &tree = L"")
    {
        fs::create_directories(path);
        makeFiles(path, tree);
    }
    ~ScratchFolder()
    {
        std::error_code ignored; // a failed assertion may have left what it cannot reach
        fs::remove_all(path, ignored);
    }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    const fs::path path = L"X:\\scratch";
};

/// Opens a file or folder without sharing it; to be closed by the caller.
inline HANDLE holdOpen(const fs::path &path)
{
    return CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

/// What a function has put into standard output so far, without what the C library still holds.
template <typename Function>
std::string flushedBy(Function function)
{
    std::fflush(stdout);
    int pipe[2];
    _pipe(pipe, 65536, _O_BINARY);
    const int output = _dup(1);
    _dup2(pipe[1], 1);
    _close(pipe[1]);
    function();
    _dup2(output, 1);
    std::string text(65536, ' ');
    text.resize(static_cast<std::size_t>(_read(pipe[0], text.data(), 65536)));
    _close(output);
    _close(pipe[0]);
    return text;
}

/// "Error 5: Access denied." for 5, the message being the system's.
inline std::string systemError(DWORD code)
{
    char message[500];
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM, nullptr, code, 0, message,
                                        sizeof message, nullptr);
    return "Error " + std::to_string(code) + ": " + std::string(message, length - 2); // CR LF
}
