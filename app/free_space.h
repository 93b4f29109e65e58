// The free space of a folder's drive or network share. A frozen interface, see CONTRIBUTING.md.
#pragma once

#include <QString>

/// Whole MiB that the caller may still use, rounded down, as 32 bits (GetDiskFreeSpaceExW). 1000
/// when there is no root, the root has 255 UTF-16 units or more, or that call fails.
///
/// The root is the first 3 characters of a path with a drive. Otherwise the backslashes from the
/// fourth character on decide. With two or more, the root ends at the second. With one, there is no
/// root. With none, the root ends at the first backslash of the path, but \\server has no root.
/// Slashes do not count.
///
///     C:\ is the root of C:\a, \\server\share\ of \\server\share\x, \ of \temp, ab\ of ab\c
///     C:, abc, \\server, \\server\share and test\swept have none
quint32 freeDriveSpaceMiB(QString path);
