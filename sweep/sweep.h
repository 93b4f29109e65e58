// The sweep of one folder tree: deletes old files and subfolders that are left empty.
#pragma once

#include "sweep/file_time.h"

#include <QString>
#include <QStringList>

/// Deletes the files below `folder` whose last change lies more than `maxAgeMinutes` back, and goes
/// on after what it cannot delete.
///
/// folder          a closing backslash is tolerated; one that does not exist gives true, no more
/// removeIfEmpty   remove the folder itself when nothing is left in it
/// recurse         sweep the subfolders too; each is removed when it ends up empty. Links to
///                 folders are followed, and nothing detects cycles
/// maxAgeMinutes   0 or less deletes every file, whatever its age. As seconds it wraps at 32 bits
/// ignoreSuffixes  null, or ends of names, no case, of entries to leave alone
/// errors          null, or a text to which a line is appended for each failure
/// deletedCount    null, or a counter of deleted files
/// deletedKiB      null, or a total of their sizes, each rounded to the nearest KiB
/// log             null, or a text to which a line is appended for each decision
/// namesOnly       log nothing but the names of deleted files
/// progressStamp   null, or the time of the last progress line that this run printed; a line is
///                 printed on entering a folder when that lies more than 5 seconds back
///
/// Returns whether nothing that the sweep saw is left in the folder; with `removeIfEmpty` then
/// whether the folder could be removed.
bool sweepFolder(const QString &folder, const bool &removeIfEmpty, const bool &recurse,
                 const qint32 &maxAgeMinutes, const QStringList *ignoreSuffixes, QString *errors,
                 qint32 *deletedCount, qint64 *deletedKiB, QString *log, const bool &namesOnly,
                 TimeStamp *progressStamp);
