#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/sweep.h"

#include "support/scratch.h"
#include "support/text.h"

namespace {

TEST(SystemErrorText, IsOneLineForAnyCode)
{
    const auto text = [](quint32 code) { return systemErrorText(code).toQString(); };
    EXPECT_EQ(latin1("No Error."), text(0));
    EXPECT_EQ(latin1("A DLL is missing."), text(126));
    EXPECT_EQ(latin1("ERROR code 107. (No system message found)"), text(107)); // it has inserts
    EXPECT_EQ(latin1("ERROR code -268435457. (No system message found)"), text(0xEFFFFFFF));
    SetLastError(145);
    EXPECT_EQ(latin1("Error 145: Directory is not empty.."), text(useLastError));
    const QStringList exceptions = linesOf("exception_texts.txt");
    EXPECT_EQ(20, exceptions.size());
    for (const QString &line : exceptions)
        EXPECT_EQ(line.mid(9), text(line.left(8).toUInt(nullptr, 16)));
}

TEST(DirListing, IsCreatedClosed)
{
    DirListingHandle handle;
    DirListing::create(handle);
    const DirListing &listing = *handle.listing;
    EXPECT_EQ(&handle, listing.owner);
    EXPECT_EQ(-1, listing.index);
    const std::vector<bool> flags = { listing.isOpen,         listing.fromLists,
                                      listing.haveLists,      listing.namesAreFullPaths,
                                      listing.includeFolders, listing.statDone,
                                      listing.statIsFolder };
    EXPECT_EQ(std::vector<bool>(7, false), flags);
    DirListing::destroy(handle);
    EXPECT_EQ(nullptr, handle.listing);
}

TEST(DirListing, SortsAndFiltersNames)
{
    const ScratchFolder scratch({ L"c.txt", L"B.txt", L"a.log", L".git\\x", L"d.TXT" });
    DirListingHandle handle;
    DirListing::create(handle);
    const auto names = [&handle](const char *folder, bool includeFolders, bool descending) {
        DirListing::open(handle, latin1(folder), includeFolders, false, true, descending);
        return QStringList(handle.listing->names).join(latin1(" "));
    };
    EXPECT_EQ(latin1(".git B.txt a.log c.txt d.TXT"), names("X:\\t", true, false));
    EXPECT_EQ(latin1("d.TXT c.txt a.log B.txt"), names("X:/t/", false, true));
    EXPECT_EQ(latin1("c.txt"), names("X:\\t\\C*", true, false));
    EXPECT_EQ(latin1("c.txt"), names("X:\\t\\c.txt", true, false));
    // Each kind of filter overrides the kinds before it. Folders pass.
    DirListing::addSuffixFilter(handle, QString());
    DirListing::addSuffixFilter(handle, latin1(".LOG"));
    EXPECT_EQ(latin1(".git a.log"), names("X:\\t", true, false));
    handle.listing->prefixFilters.append(latin1("b"));
    EXPECT_EQ(latin1("B.txt"), names("X:\\t", false, false));
    handle.listing->containsFilters.append(latin1(".T"));
    EXPECT_EQ(latin1("B.txt c.txt d.TXT"), names("X:\\t", false, false));
}

/// The status of the entries from here on. A file is named after its size and its age in days.
void expectStatusOfEntries(DirListingHandle &entry, int count)
{
    TimeStamp now = 0;
    currentTime(now);
    for (; DirListing::next(entry); --count) {
        const QString path = DirListing::fullPath(entry);
        SCOPED_TRACE(path.toUtf8().constData());
        const bool isFolder = path == latin1("X:\\t\\folder");
        EXPECT_EQ(isFolder, DirListing::isFolder(entry));
        EXPECT_EQ(isFolder ? DirListing::size(entry) : path.mid(5).toInt(),
                  DirListing::size(entry));
        EXPECT_EQ(path.mid(5).toInt(), isFolder ? 0 : (now - DirListing::time(entry)) / 86400);
    }
    EXPECT_EQ(0, count);
    EXPECT_FALSE(entry.listing->isOpen);
}

TEST(DirListing, KnowsTheStatusOfEntries)
{
    const ScratchFolder scratch({ L"folder\\x" });
    makeFile(L"X:\\t\\1", 1, "1");
    makeFile(L"X:\\t\\2", 2, "22");
    const auto held = holdOpen(L"X:\\t\\2"); // can still be queried
    DirListingHandle entry;
    DirListing::create(entry);
    for (const bool sort : { true, false, true }) {
        DirListing::open(entry, latin1("X:/t"), true, false, sort, true);
        expectStatusOfEntries(entry, 3);
    }
    DirListing::close(entry);
    DirListing &listing = *entry.listing; // with paths from outside
    listing.names = QStringList() << latin1("X:\\t\\2") << latin1("X:\\t\\folder");
    listing.isOpen = listing.fromLists = listing.namesAreFullPaths = true;
    listing.index = -1;
    expectStatusOfEntries(entry, 2);
    listing.names.append(latin1("X:\\t\\gone"));
    listing.isOpen = true;
    listing.index = 1;
    EXPECT_TRUE(DirListing::isFolder(entry));
    EXPECT_TRUE(DirListing::next(entry));
    EXPECT_FALSE(DirListing::isFolder(entry));
    EXPECT_EQ(0, DirListing::time(entry));
    EXPECT_EQ(0, DirListing::size(entry));
}

TEST(DirListing, TakesTheCreationTimeWhereTheLastWriteTimeIsNone)
{
    DirListingHandle entry;
    DirListing::create(entry);
    // No file system here keeps such times and sizes, so they are put into the search result.
    WIN32_FIND_DATAW &found = entry.listing->findData;
    found.ftCreationTime = { 0xD53E8000 + 5 * 10000000, 0x019DB1DE }; // 5 s after 1970 began
    found.ftLastWriteTime = { 0xFFFFFFFF, 0 };
    EXPECT_EQ(5, DirListing::time(entry));
    found.ftLastWriteTime.dwHighDateTime = 1;
    EXPECT_EQ(-11644472741, DirListing::time(entry)); // 858.99 s after 1601 began
    found.nFileSizeHigh = 1;
    EXPECT_EQ(4294967296, DirListing::size(entry));
}

/// Sweeps X:\t with the default age limit, and removes it when nothing is left.
bool sweepScratch(QString *log = nullptr, bool namesOnly = false, QString *errors = nullptr,
                  const QStringList *suffixes = nullptr, TimeStamp *progressStamp = nullptr,
                  bool recurse = true)
{
    return sweepFolder(latin1("X:\\t"), true, recurse, 14 * 1440, suffixes, errors, nullptr,
                       nullptr, log, namesOnly, progressStamp);
}

TEST(SweepFolder, KeepsIgnoredEntries)
{
    const ScratchFolder scratch({ L"keep\\a.SAV", L"skip\\b.sav\\c", L"skip\\d" });
    const QStringList suffixes = QStringList() << latin1("x") << latin1(".sav");
    QString errors;
    QString log;
    EXPECT_FALSE(sweepScratch(&log, false, &errors, &suffixes));
    EXPECT_EQ(latin1("   [X:\\t]: \n"
                     "     -dir [keep]\n"
                     "   [X:\\t\\keep]: \n"
                     "     -ignS a.SAV   '.sav'\n"
                     "     -dir [skip]\n"
                     "   [X:\\t\\skip]: \n"
                     "     -ign [b.sav]  '.sav'\n"
                     "     -del d\n"),
              log);
    // An ignored folder keeps nothing around it: the removal of that is tried, and fails.
    EXPECT_EQ(latin1("Error deleting folder X:\\t\\skip:Error 145: Directory is not empty..\n"),
              errors);
}

TEST(SweepFolder, PassesSubfoldersOverWithoutRecursion)
{
    const ScratchFolder scratch({ L"b", L"sub\\a" });
    EXPECT_FALSE(sweepScratch(nullptr, false, nullptr, nullptr, nullptr, false));
    EXPECT_FALSE(fs::exists(L"X:\\t\\b"));
    EXPECT_TRUE(fs::exists(L"X:\\t\\sub\\a"));
}

TEST(SweepFolder, NotesProgressWhenMoreThanFiveSecondsHavePassed)
{
    for (const TimeStamp age : { 5, 6 }) {
        TimeStamp now = 0;
        TimeStamp stamp = 0;
        TimeStamp end = 0;
        do { // within one second
            const ScratchFolder scratch;
            currentTime(now);
            stamp = now - age;
            sweepScratch(nullptr, false, nullptr, nullptr, &stamp);
            currentTime(end);
        } while (now != end);
        EXPECT_EQ(age > 5 ? now : now - age, stamp);
    }
}

TEST(SweepFolder, LogsNothingMoreInAFullLog)
{
    constexpr int fullLog = 1 << 29; // units
    QString log;
    log.reserve(fullLog + 100);
    for (const int units : { fullLog - 1, fullLog }) {
        const ScratchFolder scratch({ L"old" });
        log.resize(units);
        EXPECT_TRUE(sweepScratch(&log, true));
        EXPECT_EQ(units < fullLog ? units + 4 : units, log.size());
        EXPECT_FALSE(fs::exists(L"X:\\t"));
    }
}

TEST(SweepFolder, LeavesNothingOpen)
{
    const ScratchFolder scratch({ L"a\\held", L"a\\old", L"held\\old" });
    {
        const auto file = holdOpen(L"X:\\t\\a\\held");
        const auto folder = holdOpen(L"X:\\t\\held");
        EXPECT_FALSE(sweepScratch());
    }
    for (const wchar_t *left : { L"X:\\t", L"X:\\t\\a", L"X:\\t\\a\\held", L"X:\\t\\held\\old" })
        EXPECT_NE(INVALID_HANDLE_VALUE, holdOpen(left).get()) << testing::PrintToString(left);
}

TEST(SweepFolder, NeedsLittleStackForTheDeepestTree)
{
    const ScratchFolder scratch;
    std::wstring folder = L"X:\\t";
    while (folder.size() < 494)
        folder += L"\\d";
    makeFile(folder + L"\\o", 30);
    fs::create_directory(folder + L"\\e");     // its entries would not be seen
    constexpr SIZE_T halfOfTheStack = 1048576; // bytes, of what the program's thread has
    const auto sweep = [](void *) -> DWORD { return sweepScratch() ? 1 : 0; };
    const HANDLE thread = CreateThread(nullptr, halfOfTheStack, sweep, nullptr,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, 60000));
    CloseHandle(thread);
    EXPECT_FALSE(fs::exists(scratch.path));
}

TEST(FileTime, CountsWholeSecondsFrom1970)
{
    const auto seconds = [](quint64 ticks) { // of 100 ns
        TimeStamp result = 7;
        fileTimeToSeconds(result, static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32));
        return result;
    };
    EXPECT_EQ(-11644473600, seconds(0));
    EXPECT_EQ(0, seconds(116444735990000001));
    EXPECT_EQ(0, seconds(116444736009999999));
    EXPECT_EQ(1, seconds(116444736010000000));
}

TEST(FileTime, HasElapsedOnlyAfterTheSpan)
{
    TimeStamp stamp = 100;
    const TimeStamp end = 105;
    const TimeStamp later = 106;
    EXPECT_FALSE(hasElapsed(stamp, 5, true, &end));
    EXPECT_TRUE(hasElapsed(stamp, 5, false, &later));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true, &later));
    EXPECT_EQ(106, stamp);
    EXPECT_FALSE(hasElapsed(stamp, 1LL << 32, false, &later)); // more than 32 bits
    EXPECT_TRUE(hasElapsed(stamp, 5, true));                   // now is later
    EXPECT_EQ(-2147482336, daysToMinutes(1491309));            // which wraps
}

} // namespace
