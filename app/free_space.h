// The free space of a folder's drive or network share. A frozen interface, see CONTRIBUTING.md.
#pragma once

#include <QString>

/// Whole MiB that the caller may still use, rounded down, as 32 bits (GetDiskFreeSpaceExW). 1000
/// when there is no root, the root has 255 UTF-16 units or more, or that call fails.
///
/// The root is the first 3 characters of a path with a drive. Otherwise it is the path up to its
/// second backslash from the fourth character on (\\server\share\). Without any there, it is the
/// path up to its first backslash (\temp, ab\c), but \\server has none. Slashes do not count.
quint32 freeDriveSpaceMiB(QString path);
