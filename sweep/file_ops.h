// Questions about and changes to single files and folders.
//
// A path is cut at its first 500 UTF-16 units, and from 240 units on it is handed to the platform
// with the long-path prefix (its 4 or 6 units count towards the 500), so a longer path names
// whatever its beginning names. Any failure of the platform counts as "does not exist".
#pragma once

#include "sweep/file_time.h"
#include "text/fixed_string.h"

/// Whether the path names something that exists and is not a folder (GetFileAttributesW).
bool fileExists(const FixedWideString &path);
bool fileExists(const QString &path);

/// Whether the path names an existing folder (GetFileAttributesW). One closing backslash is
/// dropped first, so that C:\ asks for the current folder of drive C. False below 3 units.
bool folderExists(QString path);

/// Whether the path names an existing file that could be opened and, if asked, sized. Fills `time`
/// with its last-write time (0 when it cannot be read) and `size` with its bytes; either may be
/// null. The file is opened by its plain path, without the long-path prefix, so a path that is too
/// long for the plain form gives false (CreateFileW, GetFileTime, GetFileSizeEx).
bool fileTimeAndSize(const FixedWideString &path, TimeStamp *time, qint64 *size);
bool fileTimeAndSize(const QString &path, TimeStamp *time, qint64 *size);

/// Deletes one file, a read-only, hidden or system one too: its attributes are reset first
/// (SetFileAttributesW, DeleteFileW).
///
/// Returns an empty text when the file is gone, also when it was gone before, and for a folder,
/// which is left alone; otherwise "Unable to delete file; " with the system's text and a full stop.
QString deleteFile(const QString &path);

/// Removes an empty folder (QDir::rmdir, which cuts nothing and has its own prefix for long paths).
/// False when that fails: the thread's last error then tells why. A relative path is looked for
/// below itself, and so is not found.
bool removeFolder(const QString &path);
