// The free space of the drive or network share that holds a folder.
#pragma once

#include <QString>

/// Whole MiB that the caller may still use, rounded down, as 32 bits (GetDiskFreeSpaceExW).
///
/// Windows is asked about the first 3 characters of a path with a drive, otherwise about the path
/// up to its second backslash from the fourth character on (\\server\share\); slashes do not count
/// there. Returns 1000 when there is no such root, it has 255 UTF-16 units or more, or Windows does
/// not tell. A fixed interface of the suite's tools, see CONTRIBUTING.md.
quint32 freeDriveSpaceMiB(QString path);
