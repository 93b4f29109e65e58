#include "app/folder_run.h"

#include "app/free_space.h"
#include "sweep/console.h"
#include "sweep/file_ops.h"
#include "sweep/sweep.h"
#include "text/grouped_number.h"

bool runFolder(const QString &folder, const qint32 &daysOld, const bool &verbose)
{
    const QByteArray folderText = folder.toLatin1();
    if (!folderExists(folder)) {
        print("Warning: directory %s does not exist!\n", folderText.constData());
        flushOutput();
        return false;
    }
    print("\nStarting to delete files in folder '%s', File have to be older than %d days.\n",
          folderText.constData(), daysOld);

    constexpr bool removeIfEmpty = false; // the folder that the user named stays
    constexpr bool recurse = true;
    constexpr bool namesOnly = false;
    QString errors;
    QString log;
    qint32 deletedCount = 0;
    qint64 deletedKiB = 0;
    static TimeStamp progressStamp = 0; // of the last progress line; all folders of a run share it
    sweepFolder(folder, removeIfEmpty, recurse, daysToMinutes(daysOld), nullptr, &errors,
                &deletedCount, &deletedKiB, &log, namesOnly, &progressStamp);

    print("  %d files deleted (%s Kib). \n\n", deletedCount,
          formatGroupedNumber(deletedKiB).toLatin1().constData());
    if (!errors.isEmpty())
        print("\nErrors:\n %s \n\n", errors.toLatin1().constData());
    if (verbose)
        print("\n%s\n\n", log.toLatin1().constData());
    print("  Done. Free drive space in %s is %s MiB\n\n", folderText.constData(),
          formatGroupedNumber(freeDriveSpaceMiB(folder)).toLatin1().constData());
    flushOutput();
    return true;
}
