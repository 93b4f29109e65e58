// Paths as text: normalising them, going up one folder, the prefix for long paths.
//
// Lengths and positions are in UTF-16 units. Results in a FixedWideString are silently truncated at
// its 500 units. A frozen interface of the suite's tools, see CONTRIBUTING.md, except
// withTrailingBackslash and the constants.
#pragma once

#include "text/fixed_string.h"

const QChar backslash = QLatin1Char(backslashUnit);
const QChar asterisk = QLatin1Char('*');

/// fileExists (also for fileTimeAndSize), folderExists and deleteFile add the long-path prefix to a
/// path of this many units or more, DirListing only to a longer search pattern (frozen). Without
/// the prefix Windows takes fewer than 260 units (MAX_PATH).
constexpr qint32 longPathLength = 240;

/// The path with doubled separators collapsed, and with its first run of "..", wherever it stands,
/// folded into the folder before it. The separator is the backslash when the path holds one,
/// otherwise the slash. The other of the two is ordinary text.
///
/// Frozen: a run of n separators becomes half as many, rounded up, in one pass; a network path then
/// gets one more in front. Two dots and a separator at the end of a longer name are a ".." too. A
/// ".." after fewer than 3 units is just dropped. Directly after a placeholder such as <Root>
/// nothing is folded.
///
///     C:/a//b/../c returns C:/a/c; \\\\x returns \\\x; a\..\x returns a\x
///     ab\..\cd\..\e returns cd\..\e; \\srv\share\..\x returns \\srv\sharex
QString normalizePath(QString path);

/// The same, with every slash turned into a backslash first. A path of one unit is returned
/// unchanged. Changes `path` and returns a copy.
FixedWideString normalizePathFixed(FixedWideString &path);

/// The path one folder up, ending with the separator. A path whose second unit is a separator
/// counts as a network path.
///
/// Returned unchanged: paths of fewer than 3 units. A bare network share is returned without its
/// trailing separator. The parent of a bare drive (C:\) or of a name is empty. All frozen.
///
///     C:\a\ returns C:\; \\srv\share\dir returns \\srv\share\; \\srv\share\ returns \\srv\share
QString parentFolder(QString path, QChar separator);

/// The same with the backslash as separator. Changes `path` and returns a copy. Frozen: not
/// called here.
FixedWideString parentFolderFixed(FixedWideString &path);

/// The path with a trailing backslash, unless it ends with a backslash or a slash.
QString withTrailingBackslash(const QString &path);

/// A copy with every slash turned into a backslash.
QString toBackslashPath(const QString &path);

/// Position of the last backslash, or -1. Frozen: not called here.
qint32 lastBackslash(const FixedWideString &path);

/// The folder of a path, with a trailing backslash.
///
/// Returned unchanged: paths shorter than 3 units or already ending in a backslash. Kept whole,
/// with a backslash appended: a path with no backslash after its second unit, and a path with just
/// one there whose second unit is a backslash, as in a bare \\server\share.
///
///     C:\a\b.txt returns C:\a\; \\server\share returns \\server\share\;
///     abc returns abc\; a\b\m returns a\b\m\; C: returns C:
QString folderOfPath(QString path);

/// Fills `destination` with `source` after the long-path prefix, and returns it: \\?\C:\x for C:\x,
/// \\?\UNC\server\share for \\server\share. Frozen: adds it always, and converts nothing else.
/// After \\?\ the Win32 file functions hand the rest of the path to the file system unchanged.
const FixedWideString &withLongPathPrefix(FixedWideString &destination,
                                          const FixedWideString &source);
