// The free space of the drive that a folder is on.
#pragma once

#include <QString>

/// Stands for an amount that can't be found out, for the reports' readers a plain number of MiB.
constexpr quint32 unknownFreeSpaceMiB = 1000;

/// The root that the platform is asked about: the first 3 characters of a path with a drive
/// (C:\), otherwise the path up to the second backslash from its fourth character on, which stands
/// behind the share of a network path, or up to its first backslash when there is none from there
/// on. Empty when the path has fewer than 3 characters, lacks that backslash, or names a server
/// alone. Slashes do not count.
QString freeSpaceRoot(const QString &path);

/// Whole MiB that the caller may still use on the path's drive, rounded down, as 32 bits
/// (GetDiskFreeSpaceExW). 1000 when the path has no root, the root has 255 UTF-16 units or more,
/// or the platform does not tell.
quint32 freeDriveSpaceMiB(QString path);
