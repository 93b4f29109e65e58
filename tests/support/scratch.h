// Files and folders on the scratch drive.
#pragma once

#include "sweep/windows_api.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>

namespace fs = std::filesystem;

/// Makes a file, last written so many days ago, and the folders above it.
inline void makeFile(const fs::path &path, int daysOld, const char *content = "")
{
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24 * daysOld));
}

/// The folder X:\t with these old files, removed with everything in it.
struct ScratchFolder
{
    explicit ScratchFolder(std::initializer_list<const wchar_t *> files = {})
    {
        fs::remove_all(L"X:\\t"); // what a crashed test left
        for (const wchar_t *file : files)
            makeFile(fs::path(L"X:\\t") / file, 30);
    }
    ~ScratchFolder() { fs::remove_all(L"X:\\t"); }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;
};

/// Opens a file or folder without sharing it.
inline std::unique_ptr<void, decltype(&CloseHandle)> holdOpen(const wchar_t *path)
{
    constexpr DWORD flags = FILE_FLAG_BACKUP_SEMANTICS; // which a folder needs
    return { CreateFileW(path, GENERIC_READ, 0, nullptr, OPEN_EXISTING, flags, nullptr),
             CloseHandle };
}
