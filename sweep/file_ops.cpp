#include "sweep/file_ops.h"

#include "sweep/error_text.h"
#include "sweep/windows_api.h"
#include "text/path.h"

#include <QDir>

namespace {

/// The path as the platform's calls take it: with the long-path prefix from 240 units on.
FixedWideString platformPath(const FixedWideString &path)
{
    if (path.length < longPathLength)
        return path;
    FixedWideString prefixed;
    withLongPathPrefix(prefixed, path);
    return prefixed;
}

/// Whether the platform knows the path, exactly as it stands, as a file.
bool isFile(const FixedWideString &path)
{
    const DWORD attributes = GetFileAttributesW(platformText(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

bool isFolder(const wchar_t *path)
{
    const DWORD attributes = GetFileAttributesW(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// An open file, closed when this goes out of scope.
struct FileHandle
{
    explicit FileHandle(const FixedWideString &path)
        : handle(CreateFileW(platformText(path), 0, 0, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr))
    {
    }
    ~FileHandle()
    {
        if (isOpen())
            CloseHandle(handle);
    }
    FileHandle(const FileHandle &) = delete;
    FileHandle &operator=(const FileHandle &) = delete;

    bool isOpen() const { return handle != INVALID_HANDLE_VALUE; }

    HANDLE handle;
};

TimeStamp lastWriteTime(const FileHandle &file)
{
    TimeStamp seconds = 0;
    FILETIME created;
    FILETIME accessed;
    FILETIME written;
    if (GetFileTime(file.handle, &created, &accessed, &written) != 0)
        fileTimeToSeconds(seconds, written.dwLowDateTime, written.dwHighDateTime);
    return seconds;
}

} // namespace

bool fileExists(const FixedWideString &path) { return isFile(platformPath(path)); }

bool fileExists(const QString &path) { return fileExists(fixedText<FixedWideString>(path)); }

bool folderExists(QString path)
{
    if (path.size() < 3)
        return false;
    if (path.endsWith(QLatin1Char('\\')))
        path.chop(1);
    if (path.size() < longPathLength)
        return isFolder(platformText(path));
    return isFolder(platformText(platformPath(fixedText<FixedWideString>(path))));
}

bool fileTimeAndSize(const FixedWideString &path, TimeStamp *time, qint64 *size)
{
    if (!fileExists(path))
        return false;
    const FileHandle file(path);
    if (!file.isOpen())
        return false;
    if (time != nullptr)
        *time = lastWriteTime(file);
    if (size == nullptr)
        return true;
    LARGE_INTEGER bytes;
    if (GetFileSizeEx(file.handle, &bytes) == 0)
        return false;
    *size = bytes.QuadPart;
    return true;
}

bool fileTimeAndSize(const QString &path, TimeStamp *time, qint64 *size)
{
    return fileTimeAndSize(fixedText<FixedWideString>(path), time, size);
}

QString deleteFile(const QString &path)
{
    const FixedWideString name = platformPath(fixedText<FixedWideString>(path));
    if (!isFile(name))
        return QString();
    // Not checked: where the attributes stay, the deletion itself says why it fails.
    SetFileAttributesW(platformText(name), FILE_ATTRIBUTE_NORMAL);
    if (DeleteFileW(platformText(name)) != 0)
        return QString();
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND)
        return QString();
    return QString::fromLatin1("Unable to delete file; %1.")
        .arg(systemErrorText(error).toQString());
}

bool removeFolder(const QString &path) { return QDir(path).rmdir(path); }
