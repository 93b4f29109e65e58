#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/sweep.h"

#include "support/scratch.h"
#include "support/text.h"

namespace {

TEST(ErrorText, IsTheSystemsOrThatOfAnExceptionCode)
{
    EXPECT_EQ("No Error.", plain(systemErrorText(0).toQString()));
    EXPECT_EQ("A DLL is missing.", plain(systemErrorText(126).toQString()));
    EXPECT_EQ(latin1("Error 5: %1.").arg(qt_error_string(5)), systemErrorText(5).toQString());
    for (const QStringList &row : rowsOf("error_texts.txt")) {
        const quint32 code = row.at(0).toUInt(nullptr, 16);
        EXPECT_EQ(row.at(1), exceptionCodeText(code).toQString());
        if (code >= 0xC0000000) { // Windows itself has words for a few of the others
            EXPECT_EQ(row.at(1), systemErrorText(code).toQString());
        }
    }
}

TEST(DirListing, SortsAndFiltersNames)
{
    const ScratchFolder scratch({ L"c.txt", L"B.txt", L"a.log", L".git\\x", L"d.TXT" });
    DirListingHandle handle;
    DirListing::create(handle);
    const auto names = [&handle](const char *folder, bool includeFolders, bool descending) {
        DirListing::open(handle, latin1(folder), includeFolders, false, true, descending);
        return plain(QStringList(handle.listing->names).join(latin1(" ")));
    };
    EXPECT_EQ(".git B.txt a.log c.txt d.TXT", names("X:\\t", true, false));
    EXPECT_EQ("d.TXT c.txt a.log B.txt", names("X:/t/", false, true));
    EXPECT_EQ("c.txt", names("X:\\t\\C*", true, false));
    EXPECT_EQ("c.txt", names("X:\\t\\c.txt", true, false));
    // Each kind of filter overrides the kinds before it. Folders pass.
    DirListing::addSuffixFilter(handle, QString());
    DirListing::addSuffixFilter(handle, latin1(".LOG"));
    EXPECT_EQ(".git a.log", names("X:\\t", true, false));
    handle.listing->prefixFilters.append(latin1("b"));
    EXPECT_EQ(".git B.txt", names("X:\\t", true, false));
    handle.listing->containsFilters.append(latin1(".T"));
    EXPECT_EQ(".git B.txt c.txt d.TXT", names("X:\\t", true, false));
}

/// Path, size and age in days (99 without a time) of each remaining entry. A folder ends with "\".
std::string restOf(DirListingHandle &handle)
{
    QString entries;
    while (DirListing::next(handle)) {
        const qint64 days = qMin(99LL, (std::time(nullptr) - DirListing::time(handle)) / 86400);
        entries += DirListing::fullPath(handle) + latin1(DirListing::isFolder(handle) ? "\\" : "")
                   + QString::fromLatin1(" %1 %2; ").arg(DirListing::size(handle)).arg(days);
    }
    EXPECT_FALSE(handle.listing->isOpen);
    return plain(entries);
}

TEST(DirListing, KnowsTheStatusOfEntries)
{
    const ScratchFolder scratch({ L"folder\\x" });
    makeFile(L"X:\\t\\a", 3, "1234");
    const auto held = holdOpen(L"X:\\t\\a"); // can still be queried
    DirListingHandle handle;
    DirListing::create(handle);
    DirListing &listing = *handle.listing;
    EXPECT_EQ(&handle, listing.owner);
    for (const bool flag :
         { listing.isOpen, listing.fromLists, listing.haveLists, listing.namesAreFullPaths,
           listing.includeFolders, listing.statDone, listing.statIsFolder })
        EXPECT_FALSE(flag);
    listing.names << latin1("X:\\t\\a") << latin1("X:\\t") << latin1("X:\\gone");
    listing.isOpen = listing.fromLists = listing.namesAreFullPaths = true;
    EXPECT_EQ("X:\\t\\a 4 3; X:\\t\\ 0 99; X:\\gone 0 99; ", restOf(handle));
    EXPECT_EQ(0, listing.statTime);
    EXPECT_TRUE(fileTimeAndSize(latin1("X:\\t\\a"), nullptr, nullptr));
    DirListing::open(handle, latin1("X:\\t\\folder"), true, true, false, false); // into memory
    DirListing::open(handle, latin1("X:/t"), true, false, true, true);
    EXPECT_EQ("X:\\t\\folder\\ 0 0; X:\\t\\a 4 3; ", restOf(handle));
    DirListing::open(handle, latin1("X:/t/folder/x*"), true, false, false, true);
    EXPECT_EQ("X:\\t\\folder\\x 0 30; ", restOf(handle));
    DirListing::open(handle, latin1("X:/t"), true, false, false, false);
    EXPECT_TRUE(DirListing::next(handle)); // closed halfway, or the folder could not be removed
}

TEST(DirListing, TakesTheCreationTimeWhereTheLastWriteTimeIsNone)
{
    DirListingHandle handle;
    DirListing::create(handle);
    // No file system here keeps such times and sizes, so they are put into the search result.
    WIN32_FIND_DATAW &found = handle.listing->findData;
    constexpr DWORD low1970 = 0xD53E8000;
    found.ftLastWriteTime = { 0xFFFFFFFF, 0 };
    found.ftCreationTime = { low1970 + 59999999, 0x019DB1DE }; // almost 6 s after 1970 began
    EXPECT_EQ(5, DirListing::time(handle));
    found.ftCreationTime.dwLowDateTime = low1970 - 9999999; // almost 1 s before
    EXPECT_EQ(0, DirListing::time(handle));
    found.ftLastWriteTime.dwHighDateTime = 1;
    EXPECT_EQ(-11644472741, DirListing::time(handle)); // 858.99 s after 1601 began
    found.nFileSizeHigh = 1;
    EXPECT_EQ(4294967296, DirListing::size(handle));
    DirListing::destroy(handle); // the destructor of the handle must then do nothing
}

/// A sweep of X:\t for what is more than a day old.
struct SweepCall
{
    bool operator()() const
    {
        return sweepFolder(folder, removeIfEmpty, recurse, 1440, ignoreSuffixes, errors, nullptr,
                           nullptr, log, false, progressStamp);
    }

    QString folder = latin1("X:\\t");
    bool removeIfEmpty = true;
    bool recurse = true;
    const QStringList *ignoreSuffixes = nullptr;
    QString *errors = nullptr;
    QString *log = nullptr;
    TimeStamp *progressStamp = nullptr;
};

TEST(SweepFolder, KeepsWhatIsYoungIgnoredOrHeldOpen)
{
    const ScratchFolder scratch({ L"held\\old", L"in\\use\\b", L"keep\\a.SAV", L"skip\\c.sav\\d" });
    makeFile(L"X:\\t\\young", -1);
    const auto folder = holdOpen(L"X:\\t\\held");
    const auto file = holdOpen(L"X:\\t\\in\\use\\b");
    const QStringList suffixes = QStringList() << latin1("x") << latin1(".sav");
    QString errors;
    QString log;
    SweepCall call;
    call.ignoreSuffixes = &suffixes;
    call.errors = &errors;
    call.log = &log;
    EXPECT_FALSE(call());
    const QString expected = contentOf("kept_entries.txt"); // with the words for in use, not empty
    EXPECT_EQ(expected.arg(qt_error_string(32), qt_error_string(145)), (log + errors).trimmed());
    call.folder = latin1("X:\\t\\skip");
    call.removeIfEmpty = false;
    EXPECT_FALSE(call());
    call.ignoreSuffixes = nullptr;
    call.recurse = false;
    EXPECT_TRUE(call());
    EXPECT_TRUE(fs::exists(L"X:\\t\\skip\\c.sav\\d"));
}

TEST(SweepFolder, MovesTheProgressStampAfterMoreThanFiveSeconds)
{
    const ScratchFolder scratch({ L"old" });
    const TimeStamp now = std::time(nullptr);
    TimeStamp stamp = now - 5;
    SweepCall call;
    call.removeIfEmpty = false;
    call.progressStamp = &stamp;
    call();
    EXPECT_NE(now, stamp); // not yet; it moves only if the next second has begun
    stamp = now - 6;
    call();
    EXPECT_LE(now, stamp);
}

TEST(SweepFolder, LogsNoMoreNamesInAFullLog)
{
    const ScratchFolder scratch({ L"folder\\old" });
    makeFile(L"X:\\t\\young", 0);
    constexpr int fullLog = 1 << 29; // UTF-16 units, which take 1 GiB of memory
    QString log;
    log.reserve(fullLog + 100);
    log.resize(fullLog - 12); // room for one line, "   [X:\\t]: "
    SweepCall call;
    call.log = &log;
    EXPECT_FALSE(call());
    EXPECT_EQ(fullLog, log.size());
    EXPECT_FALSE(fs::exists(L"X:\\t\\folder"));
}

TEST(FileTime, HasElapsedAfterTheSpanAndNotAtItsEnd)
{
    TimeStamp stamp = 100;
    const TimeStamp now = 106;
    EXPECT_FALSE(hasElapsed(stamp, 6, true, &now));
    EXPECT_FALSE(hasElapsed(stamp, 1LL << 32, true, &now)); // more than 32 bits
    EXPECT_TRUE(hasElapsed(stamp, 5, false, &now));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true, &now));
    EXPECT_EQ(106, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true)); // now is later
}

} // namespace
