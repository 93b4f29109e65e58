// The sweep of one folder tree: deletes old files and subfolders that are left empty. A frozen
// interface of the suite's tools, see CONTRIBUTING.md.
#pragma once

#include "sweep/file_time.h"

#include <QString>
#include <QStringList>

/// Deletes the files below `folder` that were last written more than `maxAgeMinutes` ago. Files and
/// folders that cannot be deleted do not stop it.
///
/// folder          may end with a backslash. If folderExists is false, the result is true
/// removeIfEmpty   remove the folder itself unless a file or a swept subfolder is left in it. With
///                 only other subfolders left (ignored, or without `recurse`), the removal is
///                 tried, fails, and adds a line to `errors`
/// recurse         sweep the subfolders too, and remove each that is left empty. Links to folders
///                 are followed, and cycles are not detected
/// maxAgeMinutes   0 or less deletes every file, whatever its age. In seconds it wraps at 32 bits
/// ignoreSuffixes  null, or endings of names, case-insensitive, of entries to leave alone
/// errors          null, or a text that gets a line for each failure
/// deletedCount    null, or a counter of deleted files
/// deletedKiB      null, or the total of their sizes, each rounded to the nearest KiB
/// log             null, or a text that gets a line for each decision. Once it holds 2^29 UTF-16
///                 units, half of what a QString can, it gets no more lines
/// namesOnly       log only the names of deleted files
/// progressStamp   null, or the time of the run's last progress line. Entering a folder prints a
///                 line when that is more than 5 seconds ago
///
/// Returns true when the folder is now empty as far as the sweep saw; with `removeIfEmpty`, true
/// when it was also removed. Without `recurse` the sweep does not see subfolders.
bool sweepFolder(const QString &folder, const bool &removeIfEmpty, const bool &recurse,
                 const qint32 &maxAgeMinutes, const QStringList *ignoreSuffixes, QString *errors,
                 qint32 *deletedCount, qint64 *deletedKiB, QString *log, const bool &namesOnly,
                 TimeStamp *progressStamp);
