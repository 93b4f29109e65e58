// Paths as text: bringing them into one shape, going up a folder, the prefix for long ones.
//
// Nothing here asks the disk. Lengths and positions are in UTF-16 units. Results in a
// FixedWideString are cut at its 500 units without a trace.
#pragma once

#include "text/fixed_string.h"

const QChar backslash = QLatin1Char('\\'); // between the folders of a path
const QChar asterisk = QLatin1Char('*');   // for any text in a name

/// Units that the long-path prefix adds to a path, and to a network path.
constexpr qint32 longPathPrefixUnits = 4;
constexpr qint32 longNetworkPrefixUnits = 6;

/// Length in units from which a path is handed to the platform with the long-path prefix; the
/// platform's plain form ends at 260 units, a name's room and the terminator included (MAX_PATH).
constexpr qint32 longPathLength = 240;

/// The path with doubled separators collapsed and a leading run of ".." folded into the folder in
/// front of it. The separator is the backslash when the path holds one, otherwise the slash; the
/// other of the two is ordinary text.
///
/// Deliberately so: in one pass a run of n separators becomes half as many, rounded up, and a
/// network path keeps its leading pair; only the first group of ".." is folded, wherever two full
/// stops and a separator stand, behind a name too; directly behind a placeholder such as <Root>
/// it is left.
///
///     C:/a//b/../c gives C:/a/c; ab\..\cd\..\e gives cd\..\e; \\srv\share\..\x gives \\srv\sharex
QString normalizePath(QString path);

/// The same with every slash turned into a backslash first. Changes `path` and returns a copy.
FixedWideString normalizePathFixed(FixedWideString &path);

/// The path one folder up, ending with the separator. Paths of fewer than 3 units come back as
/// they are, a bare network share without its trailing separator; the parent of a bare drive (C:
/// and a backslash) or a name is empty. A path whose second unit is a separator counts as a network
/// path.
///
///     C:\a\ gives C:\; \\srv\share\dir gives \\srv\share\; \\srv\share\ gives \\srv\share
QString parentFolder(QString path, QChar separator);

/// The same with the backslash as separator. Changes `path` and returns a copy.
FixedWideString parentFolderFixed(FixedWideString &path);

/// The path with a closing backslash, unless it ends in a backslash or slash.
QString closedFolder(const QString &path);

/// A copy with every slash turned into a backslash.
QString toBackslashPath(const QString &path);

/// Position of the last backslash, or -1.
qint32 lastBackslash(const FixedWideString &path);

/// The folder part of a path, with its closing backslash. A path of fewer than 3 units, or one
/// that ends in a backslash already, comes back as it is; a bare \\server\share is kept whole (the
/// second backslash is what it is known by), and so is a path without a backslash behind its second
/// unit.
///
///     C:\a\b.txt gives C:\a\; \\server\share gives \\server\share\; abc gives abc\ (the text
///     itself is taken for the folder)
QString folderOfPath(QString path);

/// Fills `destination` with `source` behind the platform's long-path prefix and returns it:
/// \\?\C:\x for C:\x, \\?\UNC\server\share for \\server\share. The prefix is always added; what
/// then passes 500 units is cut. Slashes and relative paths are not converted.
///
/// Rests on the \\?\ form of the Win32 file functions, which passes the rest on as it stands.
const FixedWideString &withLongPathPrefix(FixedWideString &destination,
                                          const FixedWideString &source);
