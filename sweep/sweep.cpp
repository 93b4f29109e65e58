#include "sweep/sweep.h"

#include "sweep/console.h"
#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"

namespace {

constexpr qint64 secondsBetweenProgressLines = 5;
constexpr qint64 bytesPerKiB = 1024;
constexpr qint32 fullLogUnits = 1 << 29;  // half of what a QString can hold
constexpr qint32 logUnitsAroundName = 13; // of a line without suffix

/// The arguments of one sweep, the same in every folder.
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

/// The state of one folder while its entries are visited.
struct FolderState
{
    TimeStamp now = 0;
    bool nothingLeft = true;
    bool kept = false; // a file or a swept subfolder is left, so the removal is not tried
};

/// The log for deletions, or null. A full log gets no more lines; otherwise it could end the run
/// before its report.
QString *deletionLog(const Sweep &sweep)
{
    const bool hasRoom = sweep.log != nullptr && sweep.log->size() < fullLogUnits;
    return hasRoom ? sweep.log : nullptr;
}

/// The log for all other decisions, or null.
QString *decisionLog(const Sweep &sweep) { return sweep.namesOnly ? nullptr : deletionLog(sweep); }

/// Appends the pieces of a line to a text that may be absent.
template <typename... Pieces>
void append(QString *text, const Pieces &...pieces)
{
    if (text != nullptr)
        (text->append(pieces), ...);
}

/// Reserves log space for a whole folder when its lines would more than double the log. Growing
/// line by line would copy the log and briefly hold it twice.
void reserveLog(const Sweep &sweep, const DirListing &folder)
{
    QString *log = decisionLog(sweep);
    if (log == nullptr)
        return;
    qint64 units = log->size();
    for (const QString &name : folder.names)
        units += logUnitsAroundName + name.size();
    if (units / 2 > log->capacity() && units < fullLogUnits)
        log->reserve(static_cast<qint32>(units));
}

/// The first ignored suffix that the name ends with, or null.
const QString *ignoredSuffix(const Sweep &sweep, const QString &name)
{
    if (sweep.ignoreSuffixes == nullptr)
        return nullptr;
    for (const QString &suffix : *sweep.ignoreSuffixes)
        if (name.endsWith(suffix, Qt::CaseInsensitive))
            return &suffix;
    return nullptr;
}

void markKept(FolderState &state)
{
    state.kept = true;
    state.nothingLeft = false;
}

void printProgress(const Sweep &sweep, const QString &folder, const TimeStamp &now)
{
    constexpr bool update = true;
    if (sweep.progressStamp == nullptr
        || !hasElapsed(*sweep.progressStamp, secondsBetweenProgressLines, update, &now))
        return;
    print("     ...%s...\n", folder.toLatin1().constData());
    flushOutput();
}

bool isOldEnough(const Sweep &sweep, const FolderState &state, TimeStamp entryTime)
{
    if (sweep.maxAgeMinutes <= 0)
        return true;
    constexpr bool update = false;
    return hasElapsed(entryTime, minutesToSeconds(sweep.maxAgeMinutes), update, &state.now);
}

void countDeletion(const Sweep &sweep, qint64 size)
{
    if (sweep.deletedCount != nullptr)
        ++*sweep.deletedCount;
    if (sweep.deletedKiB != nullptr)
        // Unsigned, because a broken disk may report a size that wraps.
        *sweep.deletedKiB +=
            static_cast<qint64>(static_cast<quint64>(size) + bytesPerKiB / 2) / bytesPerKiB;
}

void deleteEntry(const Sweep &sweep, DirListingHandle &handle, FolderState &state)
{
    const qint64 size = DirListing::size(handle);
    // Frozen: logged before the attempt, so a file that cannot be deleted has its line too.
    const QLatin1String head(sweep.namesOnly ? "" : "     -del ");
    append(deletionLog(sweep), head, DirListing::name(handle), QLatin1String("\n"));
    const QString path = DirListing::fullPath(handle);
    const QString error = deleteFile(path);
    if (error.isEmpty()) {
        countDeletion(sweep, size);
        return;
    }
    append(sweep.errors, path, QLatin1String(":"), error, QLatin1String("\n"));
    markKept(state);
}

void sweepFile(const Sweep &sweep, DirListingHandle &handle, FolderState &state)
{
    const QString name = DirListing::name(handle);
    const QString *suffix = ignoredSuffix(sweep, name);
    if (suffix != nullptr) {
        append(decisionLog(sweep), QLatin1String("     -ignS "), name, QLatin1String("   '"),
               *suffix, QLatin1String("'\n"));
        markKept(state);
        return;
    }
    if (!isOldEnough(sweep, state, DirListing::time(handle))) {
        append(decisionLog(sweep), QLatin1String("     -ignT "), name, QLatin1String("\n"));
        markKept(state);
        return;
    }
    deleteEntry(sweep, handle, state);
}

bool sweepTree(const Sweep &sweep, const QString &folder, bool removeIfEmpty);

void sweepSubfolder(const Sweep &sweep, const DirListingHandle &handle, FolderState &state)
{
    if (!sweep.recurse)
        return;
    const QString name = DirListing::name(handle);
    const QString *suffix = ignoredSuffix(sweep, name);
    if (suffix != nullptr) {
        append(decisionLog(sweep), QLatin1String("     -ign ["), name, QLatin1String("]  '"),
               *suffix, QLatin1String("'\n"));
        // Frozen: not marked as kept, so the sweep still tries to remove the folder around it, and
        // reports that it cannot.
        state.nothingLeft = false;
        return;
    }
    append(decisionLog(sweep), QLatin1String("     -dir ["), name, QLatin1String("]\n"));
    constexpr bool removeIfEmpty = true;
    if (!sweepTree(sweep, DirListing::fullPath(handle), removeIfEmpty))
        markKept(state);
}

bool removeEmptied(const Sweep &sweep, const QString &folder)
{
    if (removeFolder(folder))
        return true;
    const FixedWideString reason = systemErrorText(useLastError);
    append(sweep.errors, QLatin1String("Error deleting folder "), folder, QLatin1String(":"),
           reason.toQString(), QLatin1String("\n"));
    return false;
}

/// Sweeps one folder and everything below it. A cycle of links ends where the path no longer fits.
bool sweepTree(const Sweep &sweep, const QString &folder, bool removeIfEmpty)
{
    if (!folderExists(folder))
        return true;

    constexpr bool includeFolders = true;
    constexpr bool readAllFirst = true; // so that entries can be deleted on the way
    constexpr bool sort = false;
    constexpr bool descending = false;
    DirListingHandle handle;
    DirListing::create(handle);
    DirListing::open(handle, folder, includeFolders, readAllFirst, sort, descending);
    append(decisionLog(sweep), QLatin1String("   ["), folder, QLatin1String("]: \n"));
    reserveLog(sweep, *handle.listing);
    FolderState state;
    currentTime(state.now);
    printProgress(sweep, folder, state.now);

    while (DirListing::next(handle)) {
        if (DirListing::isFolder(handle))
            sweepSubfolder(sweep, handle, state);
        else
            sweepFile(sweep, handle, state);
    }
    if (state.kept || !removeIfEmpty)
        return state.nothingLeft;
    return removeEmptied(sweep, folder);
}

} // namespace

bool sweepFolder(const QString &folder, const bool &removeIfEmpty, const bool &recurse,
                 const qint32 &maxAgeMinutes, const QStringList *ignoreSuffixes, QString *errors,
                 qint32 *deletedCount, qint64 *deletedKiB, QString *log, const bool &namesOnly,
                 TimeStamp *progressStamp)
{
    Sweep sweep = {};
    sweep.recurse = recurse;
    sweep.maxAgeMinutes = maxAgeMinutes;
    sweep.ignoreSuffixes = ignoreSuffixes;
    sweep.errors = errors;
    sweep.deletedCount = deletedCount;
    sweep.deletedKiB = deletedKiB;
    sweep.log = log;
    sweep.namesOnly = namesOnly;
    sweep.progressStamp = progressStamp;
    return sweepTree(sweep, folder, removeIfEmpty);
}
