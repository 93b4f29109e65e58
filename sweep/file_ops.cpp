#include "sweep/file_ops.h"

#include "sweep/error_text.h"
#include "sweep/windows_api.h"

#include <QDir>

namespace {

/// The path as Windows takes it: with the long-path prefix at longPathLength units or more.
FixedWideString windowsPath(const FixedWideString &path)
{
    if (path.length < longPathLength)
        return path;
    FixedWideString prefixed;
    withLongPathPrefix(prefixed, path);
    return prefixed;
}

enum class EntryKind { none, file, folder };

/// The kind of entry that Windows has under exactly this path.
EntryKind kindOf(const wchar_t *path)
{
    const DWORD attributes = GetFileAttributesW(path);
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return EntryKind::none;
    return hasFolderAttribute(attributes) ? EntryKind::folder : EntryKind::file;
}

/// An open file, closed when this goes out of scope.
struct FileHandle
{
    explicit FileHandle(const FixedWideString &path)
        : handle(CreateFileW(toWChar(path), 0, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                             nullptr))
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

bool fileExists(const FixedWideString &path)
{
    return kindOf(toWChar(windowsPath(path))) == EntryKind::file;
}

bool fileExists(const QString &path) { return fileExists(fixedText<FixedWideString>(path)); }

bool folderExists(QString path)
{
    if (path.size() < 3)
        return false;
    if (path.endsWith(backslash))
        path.chop(1);
    const FixedWideString folder = windowsPath(fixedText<FixedWideString>(path));
    return kindOf(toWChar(folder)) == EntryKind::folder;
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
    const FixedWideString file = windowsPath(fixedText<FixedWideString>(path));
    if (kindOf(toWChar(file)) != EntryKind::file)
        return QString();
    // The result is not checked: if the file stays read-only, the deletion fails and tells why.
    SetFileAttributesW(toWChar(file), FILE_ATTRIBUTE_NORMAL);
    if (DeleteFileW(toWChar(file)) != 0)
        return QString();
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND)
        return QString();
    return QString::fromLatin1("Unable to delete file; %1.")
        .arg(systemErrorText(error).toQString());
}

// Frozen: resolves a relative path against itself.
bool removeFolder(const QString &path) { return QDir(path).rmdir(path); }
