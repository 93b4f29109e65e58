// Whether files and folders exist, their times and sizes, and their deletion.
//
// A path is silently truncated at 500 UTF-16 units. A path of 240 units or more is handed to
// Windows with the long-path prefix, whose 4 or 6 units count too. A truncated path names whatever
// has the shorter name. The tests for existence take any failure of Windows for "does not exist". A
// frozen interface of the suite's tools, see CONTRIBUTING.md; text/path.h belongs to it.
#pragma once

#include "sweep/file_time.h"
#include "text/path.h"

/// Whether the path names something that exists and is not a folder (GetFileAttributesW).
bool fileExists(const FixedWideString &path);
bool fileExists(const QString &path);

/// Whether the path names an existing folder (GetFileAttributesW). False below 3 units. One
/// trailing backslash is dropped first (frozen), so C:\ tests the current folder of drive C.
bool folderExists(QString path);

/// Whether the path names an existing file that could be opened and, with `size`, sized. Fills
/// `time` with its last-write time (0 when that fails) and `size` with its bytes; either may be
/// null. Frozen: opens the file without the long-path prefix, so the result is false for a path
/// that is too long without it (CreateFileW, GetFileTime, GetFileSizeEx).
bool fileTimeAndSize(const FixedWideString &path, TimeStamp *time, qint64 *size);
bool fileTimeAndSize(const QString &path, TimeStamp *time, qint64 *size);

/// Deletes one file. Its attributes are reset first, so that read-only files go too
/// (SetFileAttributesW, DeleteFileW).
///
/// Returns an empty text when the file is gone, and without an attempt when fileExists is false:
/// for a folder, for a file that was gone before, and when the network or missing rights hide it.
/// Otherwise returns "Unable to delete file; " with Windows' reason and a full stop.
QString deleteFile(const QString &path);

/// Removes an empty folder (QDir::rmdir, which truncates nothing and adds its own long-path
/// prefix). False when that fails; the thread's last error tells why. Frozen: QDir resolves
/// a relative path against itself, so "a" names a\a.
bool removeFolder(const QString &path);
