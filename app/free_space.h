// The free space of the drive or network share that holds a folder.
#pragma once

#include <QString>

/// Whole MiB that the caller may still use, rounded down, as 32 bits (GetDiskFreeSpaceExW).
///
/// The root that Windows is asked about is the drive (C:\), or the path up to the share's backslash
/// (\\server\share\); slashes do not count. Returns 1000 when the path has no such root, the root
/// has 255 UTF-16 units or more, or Windows does not tell.
quint32 freeDriveSpaceMiB(QString path);
