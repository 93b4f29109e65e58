// The folders that a directory argument with "*" stands for.
#pragma once

#include <QString>

/// Runs runFolder on every folder that the path matches, depth first and in the platform's order;
/// on the path itself when it holds no "*". A folder that can't be listed, or a "*" that matches
/// none, gives no output.
///
/// Text between a "*" and the next backslash does not restrict the folders: a*b matches every
/// folder that begins with a. That is deliberate, no full pattern is meant. A folder with a "*" in
/// its own name, which other systems can make, is passed over: it would be expanded forever.
void expandWildcardFolders(QString path, const qint32 &daysOld, const bool &verbose);
