// Files and folders on the scratch drive.
#pragma once

#include "sweep/windows_api.h"

#include <QFile>
#include <QStringList>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <memory>

namespace fs = std::filesystem;

/// Makes a file, last written so many days ago, and the folders above it.
inline void makeFile(const fs::path &path, int daysOld, const char *content = "")
{
    fs::create_directories(path.parent_path());
    std::FILE *file = _wfopen(path.c_str(), L"wb");
    std::fputs(content, file);
    std::fclose(file);
    fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(24 * daysOld));
}

/// The folder X:\t with these old files, removed with everything in it.
struct ScratchFolder
{
    explicit ScratchFolder(std::initializer_list<const wchar_t *> files = {})
    {
        fs::create_directories(path);
        for (const wchar_t *file : files)
            makeFile(path / file, 30);
    }
    ~ScratchFolder() { fs::remove_all(path, ignored); }
    ScratchFolder(const ScratchFolder &) = delete;
    ScratchFolder &operator=(const ScratchFolder &) = delete;

    const fs::path path = L"X:\\t";
    std::error_code ignored;
};

/// Opens a file or folder without sharing it; INVALID_HANDLE_VALUE when that fails.
inline std::unique_ptr<void, decltype(&CloseHandle)> holdOpen(const fs::path &path)
{
    return { CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                         FILE_FLAG_BACKUP_SEMANTICS, nullptr),
             CloseHandle };
}

/// The lines of a file from tests/data.
inline QStringList linesOf(const char *file)
{
    QFile data(QString::fromLatin1("X:/unit/bin/win64/") + QString::fromLatin1(file));
    data.open(QIODevice::ReadOnly | QIODevice::Text);
    return QString::fromLatin1(data.readAll().constData()).trimmed().split(QLatin1Char('\n'));
}
