#include "sweep/sweep.h"

#include "sweep/console.h"
#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"

namespace {

constexpr qint64 secondsBetweenProgressLines = 5;
constexpr qint64 bytesPerKiB = 1024;
constexpr qint64 mostUnitsReserved = 1 << 29; // half of what a QString can hold
constexpr qint32 unitsOfLineAround = 13;      // of a log line, around a name; no suffixes

/// What stays the same in every folder of one sweep.
struct Sweep
{
    bool recurse;
    qint32 maxAgeMinutes;
    const QStringList *ignoreSuffixes;
    QString *errors;
    qint32 *deletedCount;
    qint64 *deletedKiB;
    QString *log;
    bool namesOnly;
    TimeStamp *progressStamp;
};

/// What is found out about one folder while its entries are visited.
struct FolderState
{
    TimeStamp now = 0;
    bool nothingLeft = true;
    bool kept = false;   // a file, or a subfolder with something left in it
    bool failed = false; // to delete a file
};

/// Where decisions are logged, the names of deleted files apart; or null.
QString *decisionLog(const Sweep &sweep) { return sweep.namesOnly ? nullptr : sweep.log; }

/// Appends a line's pieces, without a text in between, to a text that may be absent.
template <typename... Pieces>
void append(QString *text, const Pieces &...pieces)
{
    if (text != nullptr)
        (text->append(pieces), ...);
}

/// Makes room in the log for a line on each entry of a folder whose lines more than double it:
/// grown line by line, the log of a huge folder would be copied, and be in memory twice, as it
/// doubles.
void reserveLog(const Sweep &sweep, const DirListing &listing)
{
    if (decisionLog(sweep) == nullptr)
        return;
    qint64 units = sweep.log->size();
    for (const QString &name : listing.names)
        units += unitsOfLineAround + name.size();
    if (units / 2 > sweep.log->capacity() && units < mostUnitsReserved)
        sweep.log->reserve(static_cast<qint32>(units));
}

/// The first of the ignored suffixes that the name ends with, or null.
const QString *ignoredSuffix(const Sweep &sweep, const QString &name)
{
    if (sweep.ignoreSuffixes == nullptr)
        return nullptr;
    for (const QString &suffix : *sweep.ignoreSuffixes)
        if (name.endsWith(suffix, Qt::CaseInsensitive))
            return &suffix;
    return nullptr;
}

void keep(FolderState &state)
{
    state.kept = true;
    state.nothingLeft = false;
}

void printProgress(const Sweep &sweep, const QString &folder, const TimeStamp &now)
{
    if (sweep.progressStamp == nullptr)
        return;
    if (!hasElapsed(*sweep.progressStamp, secondsBetweenProgressLines, true, &now))
        return;
    print("     ...%s...\n", folder.toLatin1().constData());
    flushOutput();
}

bool isOldEnough(const Sweep &sweep, const FolderState &state, TimeStamp entryTime)
{
    if (sweep.maxAgeMinutes <= 0)
        return true;
    return hasElapsed(entryTime, minutesToSeconds(sweep.maxAgeMinutes), false, &state.now);
}

void countDeletion(const Sweep &sweep, qint64 size)
{
    if (sweep.deletedCount != nullptr)
        ++*sweep.deletedCount;
    if (sweep.deletedKiB != nullptr)
        // Summed without sign: a broken disk may tell of a size that wraps.
        *sweep.deletedKiB +=
            static_cast<qint64>(static_cast<quint64>(size) + bytesPerKiB / 2) / bytesPerKiB;
}

void deleteEntry(const Sweep &sweep, DirListingHandle &entry, FolderState &state)
{
    const qint64 size = DirListing::size(entry);
    // Logged before the attempt, so the line stands for a file that then can't be deleted too.
    append(sweep.log, QLatin1String(sweep.namesOnly ? "" : "     -del "), DirListing::name(entry),
           QLatin1String("\n"));
    const QString path = DirListing::fullPath(entry);
    const QString error = deleteFile(path);
    if (error.isEmpty()) {
        countDeletion(sweep, size);
        return;
    }
    append(sweep.errors, path, QLatin1String(":"), error, QLatin1String("\n"));
    state.failed = true;
    state.nothingLeft = false;
}

void sweepFile(const Sweep &sweep, DirListingHandle &entry, FolderState &state)
{
    const QString name = DirListing::name(entry);
    const QString *suffix = ignoredSuffix(sweep, name);
    if (suffix != nullptr) {
        append(decisionLog(sweep), QLatin1String("     -ignS "), name, QLatin1String("   '"),
               *suffix, QLatin1String("'\n"));
        keep(state);
        return;
    }
    if (!isOldEnough(sweep, state, DirListing::time(entry))) {
        append(decisionLog(sweep), QLatin1String("     -ignT "), name, QLatin1String("\n"));
        keep(state);
        return;
    }
    deleteEntry(sweep, entry, state);
}

bool sweepTree(const Sweep &sweep, const QString &folder, bool removeIfEmpty);

void sweepSubfolder(const Sweep &sweep, const DirListingHandle &entry, FolderState &state)
{
    if (!sweep.recurse)
        return;
    const QString name = DirListing::name(entry);
    const QString *suffix = ignoredSuffix(sweep, name);
    if (suffix != nullptr) {
        append(decisionLog(sweep), QLatin1String("     -ign ["), name, QLatin1String("]  '"),
               *suffix, QLatin1String("'\n"));
        // Not kept, unlike a file: the removal of the folder around it is still tried, fails, and
        // that failure is what tells of the subfolder.
        state.nothingLeft = false;
        return;
    }
    append(decisionLog(sweep), QLatin1String("     -dir ["), name, QLatin1String("]\n"));
    if (!sweepTree(sweep, DirListing::fullPath(entry), sweep.recurse))
        keep(state);
}

bool removeEmptied(const Sweep &sweep, const QString &folder)
{
    if (removeFolder(folder))
        return true;
    const FixedWideString reason = systemErrorText(lastErrorCode);
    append(sweep.errors, QLatin1String("Error deleting folder "), folder, QLatin1String(":"),
           reason.toQString(), QLatin1String("\n"));
    return false;
}

/// One folder and all below it. Links are followed without a limit or a look for cycles; those end
/// where a path no longer fits into the platform's calls.
bool sweepTree(const Sweep &sweep, const QString &folder, bool removeIfEmpty)
{
    if (!folderExists(folder))
        return true;

    DirListingHandle entry;
    DirListing::create(entry);
    DirListing::open(entry, folder, true, true, false, false);
    append(decisionLog(sweep), QLatin1String("   ["), folder, QLatin1String("]: \n"));
    reserveLog(sweep, *entry.listing);
    FolderState state;
    currentTime(state.now);
    printProgress(sweep, folder, state.now);

    while (DirListing::next(entry)) {
        if (DirListing::isFolder(entry))
            sweepSubfolder(sweep, entry, state);
        else
            sweepFile(sweep, entry, state);
    }
    if (state.kept || state.failed || !removeIfEmpty)
        return state.nothingLeft;
    return removeEmptied(sweep, folder);
}

} // namespace

bool sweepFolder(const QString &folder, const bool &removeIfEmpty, const bool &recurse,
                 const qint32 &maxAgeMinutes, const QStringList *ignoreSuffixes, QString *errors,
                 qint32 *deletedCount, qint64 *deletedKiB, QString *log, const bool &namesOnly,
                 TimeStamp *progressStamp)
{
    const Sweep sweep = { recurse,    maxAgeMinutes, ignoreSuffixes, errors,       deletedCount,
                          deletedKiB, log,           namesOnly,      progressStamp };
    return sweepTree(sweep, folder, removeIfEmpty);
}
