#include "sweep/console.h"
#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/sweep.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gtest/gtest.h>

namespace {

qint64 daysSince(TimeStamp time)
{
    TimeStamp now = 0;
    currentTime(now);
    return (now - time) / 86400;
}

// The compiler's start-up code sets a handler of its own, which hides what the print does.
TEST(Console, SurvivesConversionsThatTheLibraryRefuses)
{
    const auto fail = [](const wchar_t *, const wchar_t *, const wchar_t *, unsigned, uintptr_t) {
        std::_Exit(9);
    };
    const _invalid_parameter_handler before = _set_invalid_parameter_handler(fail);
    printAsFormat("%n%hhn%");
    printAsFormat(QByteArray("%*.*d%s%c").repeated(300)); // five values in nine characters
    EXPECT_EQ(+fail, _set_invalid_parameter_handler(before));
}

TEST(ErrorText, WordsACodeInOneLine)
{
    const auto text = [](quint32 code) { return systemErrorText(code).toQString(); };
    EXPECT_EQ(q("No Error."), text(0));
    EXPECT_EQ(q("A DLL is missing."), text(126));
    EXPECT_EQ(q(systemError(5).c_str()) + q("."), text(5));
    EXPECT_TRUE(text(5).endsWith(q("..")));
    EXPECT_EQ(q("ERROR code 107. (No system message found)"), text(107)); // it has inserts
    EXPECT_EQ(q("ERROR code -268435457. (No system message found)"), text(0xEFFFFFFF));
    SetLastError(145);
    EXPECT_EQ(q(systemError(145).c_str()) + q("."), text(useLastError));

    // The twenty fixed texts by the checksum of all of them, made from what users were told.
    QByteArray texts;
    for (const quint32 code :
         { 0xC0000005, 0x80000002, 0x80000003, 0x80000004, 0xC0000006, 0xC000001D, 0xC0000025,
           0xC0000026, 0xC000008C, 0xC000008D, 0xC000008E, 0xC000008F, 0xC0000090, 0xC0000091,
           0xC0000092, 0xC0000093, 0xC0000094, 0xC0000095, 0xC0000096, 0xC00000FD })
        texts += exceptionCodeText(code).value;
    EXPECT_EQ(2335, texts.size());
    EXPECT_EQ(35230, qChecksum(texts.constData(), 2335)); // CRC-16, ISO 3309
    EXPECT_EQ(q("EXCEPTION: The thread used up its stack."), text(0xC00000FD));
}

TEST(FileOps, TellFilesFromFolders)
{
    const ScratchFolder scratch(L"folder\\x");
    makeFile(L"X:\\scratch\\file", old, 700);
    const HANDLE held = holdOpen(L"X:\\scratch\\file"); // does not hinder who only asks
    for (const QStringList &row : rowsOf(2, R"(
            X:\scratch\file -> file   X:\scratch -> folder   X:\scratch\ -> folder
            X:\scratch\\ -> folder   X:\nothing -> ''   X: -> ''   '' -> '')")) {
        const bool isFile = row[1] == q("file");
        EXPECT_EQ(isFile, fileExists(row[0])) << row[0];
        EXPECT_EQ(row[1] == q("folder"), folderExists(row[0])) << row[0];
        TimeStamp time = 0;
        qint64 size = -1;
        EXPECT_EQ(isFile, fileTimeAndSize(row[0], &time, &size)) << row[0];
        EXPECT_EQ(isFile ? 700 : -1, size);
        EXPECT_EQ(isFile, daysSince(time) == 30);
        EXPECT_EQ(isFile, !deleteFile(row[0]).isEmpty()); // held; anything else is no file
    }
    CloseHandle(held);
    fs::create_directory(L"X:\\scratch\\empty");
    fs::current_path(L"X:\\scratch");
    EXPECT_FALSE(removeFolder(q("empty"))); // it is looked for below itself
    EXPECT_FALSE(removeFolder(q("X:\\scratch\\folder")));
    EXPECT_TRUE(removeFolder(q("X:\\scratch\\empty")));
    fs::current_path(L"X:\\");
}

TEST(DirListing, YieldsWhatItIsAskedFor)
{
    const ScratchFolder scratch;
    unsigned number = 0; // of days, and of bytes
    for (const wchar_t *name :
         { L"c.txt", L"B.txt", L"a.log", L".git\\x", L"d.TXT", L"e.txt\\y" }) {
        ++number;
        makeFile(scratch.path / name, number, number);
    }
    DirListingHandle handle;
    DirListing::create(handle);
    // Of each entry the full path behind X:\scratch\, and the size, where the age is the same.
    const auto entries = [&handle] {
        QString all;
        while (DirListing::next(handle)) {
            const qint64 size = DirListing::size(handle);
            all += DirListing::fullPath(handle).mid(11);
            all += DirListing::isFolder(handle)                  ? q("\\ ")
                   : daysSince(DirListing::time(handle)) == size ? q(":%1 ").arg(size)
                                                                 : q("? ");
        }
        EXPECT_FALSE(DirListing::next(handle));
        return all;
    };
    const auto list = [&](const char *folder, bool includeFolders, bool sort, bool descending) {
        DirListing::open(handle, q(folder), includeFolders, false, sort, descending);
        return entries();
    };
    EXPECT_EQ(q(".git\\ B.txt:2 a.log:3 c.txt:1 d.TXT:5 e.txt\\ "),
              list("X:\\scratch", true, true, false));
    EXPECT_EQ(q("d.TXT:5 c.txt:1 a.log:3 B.txt:2 "), list("X:/scratch/", false, true, true));
    EXPECT_EQ(q("c.txt:1 "), list("X:\\scratch\\C*", true, false, false));
    EXPECT_EQ(q("c.txt:1 "), list("X:\\scratch\\c.txt", true, true, false));
    EXPECT_EQ(q(""), list("X:\\scratch\\nothing", true, true, false));
    DirListing::open(handle, q("X:\\scratch"), true, true, true, false);
    EXPECT_TRUE(DirListing::next(handle)); // left in the middle
    // Later kinds of filters override the earlier ones; folders pass.
    DirListing::addSuffixFilter(handle, q(""));
    DirListing::addSuffixFilter(handle, q(".LOG"));
    EXPECT_EQ(q(".git\\ a.log:3 e.txt\\ "), list("X:\\scratch", true, true, false));
    handle.listing->prefixFilters.append(q("b"));
    EXPECT_EQ(q("B.txt:2 "), list("X:\\scratch", false, true, false));
    handle.listing->containsFilters.append(q(".T"));
    EXPECT_EQ(q("B.txt:2 c.txt:1 d.TXT:5 "), list("X:\\scratch", false, true, false));

    DirListing &listing = *handle.listing; // paths that come from outside
    listing.isOpen = listing.fromLists = listing.namesAreFullPaths = true;
    listing.haveLists = false;
    listing.index = -1;
    listing.names = { q("X:\\scratch\\c.txt"), q("X:\\scratch\\.git"), q("X:\\scratch\\no") };
    EXPECT_EQ(q("c.txt:1 .git\\ no? "), entries());
    DirListing::destroy(handle);
    EXPECT_EQ(nullptr, handle.listing);
}

TEST(DirListing, TakesTheCreationTimeWhereTheLastWriteTimeIsNone)
{
    const ScratchFolder scratch(L"file");
    DirListingHandle handle;
    DirListing::create(handle);
    for (const bool readAllFirst : { true, false }) {
        DirListing::open(handle, q("X:\\scratch"), true, readAllFirst, false, false);
        ASSERT_TRUE(DirListing::next(handle));
        EXPECT_EQ(30, daysSince(DirListing::time(handle)));
        EXPECT_EQ(readAllFirst, handle.listing->findHandle == INVALID_HANDLE_VALUE);
    }
    // No file system here keeps such times and sizes: they are put into the search result itself.
    WIN32_FIND_DATAW &found = handle.listing->findData;
    found.ftCreationTime = { 0xD53E8000 + 5 * 10000000, 0x019DB1DE }; // 5 s after 1970 began
    found.ftLastWriteTime = { 0xFFFFFFFF, 0 };
    EXPECT_EQ(5, DirListing::time(handle));
    found.ftLastWriteTime.dwHighDateTime = 1;
    EXPECT_EQ(-11644472741, DirListing::time(handle)); // 858.99 s after 1601 began
    found.nFileSizeHigh = 1;
    EXPECT_EQ(4294967296, DirListing::size(handle));
}

bool sweepScratch(bool removeIfEmpty, bool recurse, const QStringList *suffixes = nullptr,
                  QString *errors = nullptr, QString *log = nullptr, bool namesOnly = false,
                  TimeStamp *progressStamp = nullptr)
{
    return sweepFolder(q("X:\\scratch"), removeIfEmpty, recurse, 14 * 1440, suffixes, errors,
                       nullptr, nullptr, log, namesOnly, progressStamp);
}

TEST(SweepFolder, KeepsIgnoredEntries)
{
    const ScratchFolder scratch(L"keep\\a.SAV|skip\\b.sav\\c|skip\\d");
    const QStringList suffixes = { q("x"), q(".sav") };
    QString errors;
    QString log;
    EXPECT_FALSE(sweepScratch(true, true, &suffixes, &errors, &log));
    EXPECT_EQ(q("   [X:\\scratch]: \n"
                "     -dir [keep]\n   [X:\\scratch\\keep]: \n     -ignS a.SAV   '.sav'\n"
                "     -dir [skip]\n   [X:\\scratch\\skip]: \n     -ign [b.sav]  '.sav'\n"
                "     -del d\n"),
              log);
    // An ignored folder keeps nothing around it: that one's removal is tried, and fails.
    EXPECT_EQ(q(("Error deleting folder X:\\scratch\\skip:" + systemError(145) + ".\n").c_str()),
              errors);
    fs::remove_all(scratch.path / L"keep");
    fs::rename(scratch.path / L"skip\\b.sav", scratch.path / L"b.sav");
    fs::remove_all(scratch.path / L"skip");
    EXPECT_FALSE(sweepScratch(false, true, &suffixes));
    EXPECT_TRUE(sweepScratch(false, false, &suffixes)); // passed over, it does not count
}

TEST(SweepFolder, DoesWithoutWhatIsOptional)
{
    const ScratchFolder scratch(L"b|sub\\a");
    QString log;
    EXPECT_FALSE(sweepScratch(true, false, nullptr, nullptr, &log, true)); // sub is passed over
    EXPECT_EQ(q("b\n"), log);
    EXPECT_EQ(L"sub|sub\\a", treeOf(scratch.path));
    EXPECT_TRUE(sweepScratch(true, true));
    EXPECT_FALSE(folderExists(q("X:\\scratch")));
    EXPECT_TRUE(sweepScratch(true, true)); // it is gone
}

TEST(SweepFolder, PrintsProgressWhenMoreThanFiveSecondsHavePassed)
{
    const ScratchFolder scratch;
    for (const TimeStamp age : { 5, 6 }) {
        TimeStamp now = 0;
        TimeStamp stamp = 0;
        TimeStamp end = 0;
        std::string printed;
        do { // within one second
            currentTime(now);
            stamp = now - age;
            printed = flushedBy(
                [&stamp] { sweepScratch(false, true, nullptr, nullptr, nullptr, false, &stamp); });
            currentTime(end);
        } while (now != end);
        EXPECT_EQ(age > 5 ? "     ...X:\\scratch...\n" : "", printed);
        EXPECT_EQ(age > 5 ? now : now - age, stamp);
    }
}

DWORD WINAPI sweepAll(void * /*unused*/) { return sweepScratch(true, true) ? 1 : 0; }

TEST(SweepFolder, NeedsLittleStackForTheDeepestTree)
{
    const ScratchFolder scratch;
    std::wstring folder = L"X:\\scratch";
    while (folder.size() < 494)
        folder += L"\\d";
    makeFile(folder + L"\\o");
    fs::create_directory(folder + L"\\e");     // its entries would not be seen
    constexpr SIZE_T halfOfTheStack = 1048576; // bytes, of what the program's thread has
    const HANDLE thread = CreateThread(nullptr, halfOfTheStack, sweepAll, nullptr,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, 60000));
    DWORD isEmptied = 0;
    GetExitCodeThread(thread, &isEmptied);
    CloseHandle(thread);
    EXPECT_EQ(1u, isEmptied);
    EXPECT_FALSE(fs::exists(L"X:\\scratch"));
}

TEST(SweepFolder, LeavesNothingOpen)
{
    const ScratchFolder scratch(L"a\\held|a\\old|b\\c\\old|b\\young");
    const HANDLE held = holdOpen(L"X:\\scratch\\a\\held");
    EXPECT_FALSE(sweepScratch(false, true));
    CloseHandle(held);
    EXPECT_EQ(L"a|a\\held|b|b\\young", treeOf(scratch.path));
    for (const wchar_t *left : { L".", L"a", L"a\\held", L"b", L"b\\young" }) {
        const HANDLE alone = holdOpen(scratch.path / left);
        EXPECT_NE(INVALID_HANDLE_VALUE, alone) << testing::PrintToString(std::wstring(left));
        CloseHandle(alone);
    }
}

TEST(FileTime, CountsWholeSecondsFrom1970)
{
    for (const QStringList &row : rowsOf(2, R"(
            116444736000000000 -> 0     116444736009999999 -> 0   116444736010000000 -> 1
            116444735990000000 -> -1    116444735990000001 -> 0   0 -> -11644473600
            9223372036854775807 -> 910692730085)")) {
        const quint64 ticks = row[0].toULongLong(); // of 100 ns
        TimeStamp seconds = 7;
        fileTimeToSeconds(seconds, static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32));
        EXPECT_EQ(row[1].toLongLong(), seconds) << row[0];
    }
}

TEST(FileTime, HasElapsedOnlyBehindTheSpan)
{
    TimeStamp stamp = 100;
    const TimeStamp end = 105;
    const TimeStamp behind = 106;
    EXPECT_FALSE(hasElapsed(stamp, 5, true, &end));
    EXPECT_TRUE(hasElapsed(stamp, 5, false, &behind));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true, &behind));
    EXPECT_EQ(106, stamp);
    EXPECT_FALSE(hasElapsed(stamp, 1LL << 32, false, &behind)); // more than 32 bits
    EXPECT_TRUE(hasElapsed(stamp, 5, true));
    EXPECT_FALSE(hasElapsed(stamp, 5, false)); // it is the current time now

    EXPECT_EQ(2147472000, minutesToSeconds(daysToMinutes(24855)));
    EXPECT_EQ(-2147408896, minutesToSeconds(daysToMinutes(24856)));
    EXPECT_EQ(2147483520, daysToMinutes(1491308));
    EXPECT_EQ(-2147482336, daysToMinutes(1491309));
}

} // namespace
