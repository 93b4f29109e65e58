// Runs the folders that a directory argument with "*" matches.
#pragma once

#include <QString>

/// Runs runFolder on every folder that the path matches, depth-first, in the order of Windows'
/// search; on the path itself when it has no "*". Only the backslash separates folders. Prints
/// nothing for a folder that cannot be listed, or for a "*" without a match.
///
/// Frozen: no full pattern match. Text between a "*" and the next backslash does not restrict the
/// folders, so a*b matches every folder that begins with a. A folder with a "*" in its own
/// name, which other systems can make, is skipped; it would be expanded forever. The references
/// are a frozen interface.
void expandWildcardFolders(QString path, const qint32 &daysOld, const bool &verbose);
