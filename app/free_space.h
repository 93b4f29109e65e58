// The free space of the drive that a folder is on.
#pragma once

#include <QString>

/// Whole MiB that the caller may still use on the path's drive, rounded down, as 32 bits
/// (GetDiskFreeSpaceExW). 1000 when the path has no root, the root has 255 UTF-16 units or more,
/// or the platform does not tell.
quint32 freeDriveSpaceMiB(QString path);
