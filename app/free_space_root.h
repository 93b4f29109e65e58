// The root of a path as the question for free space needs it. Nothing here asks the disk.
#pragma once

#include <QString>

/// The root that the platform is asked about: the first 3 characters of a path with a drive
/// (C:\), otherwise the path up to the second backslash from its fourth character on, which stands
/// behind the share of a network path, or up to its first backslash when there is none from there
/// on. Empty when the path has fewer than 3 characters, lacks that backslash, or names a server
/// alone. Slashes do not count.
QString freeSpaceRoot(const QString &path);
