#include "sweep/console.h"
#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/sweep.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

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
    QByteArray hungry;
    for (int i = 0; i < 300; ++i)
        hungry += "%*.*d%s%c"; // five values in nine characters
    printAsFormat(hungry);
    EXPECT_EQ(+fail, _set_invalid_parameter_handler(before));
}

TEST(ErrorText, WordsACodeInOneLine)
{
    const auto text = [](quint32 code) {
        return systemErrorText(code).toQString().toLatin1().toStdString();
    };
    EXPECT_EQ("No Error.", text(0));
    EXPECT_EQ("A DLL is missing.", text(126));
    EXPECT_EQ("Error 5: " + systemMessage(5) + ".", text(5));
    EXPECT_EQ("..", text(5).substr(text(5).size() - 2));
    EXPECT_EQ("ERROR code 107. (No system message found)", text(107)); // it has inserts
    EXPECT_EQ("ERROR code -268435457. (No system message found)", text(0xEFFFFFFF));
    SetLastError(145);
    EXPECT_EQ("Error 145: " + systemMessage(145) + ".", text(lastErrorCode));

    // The twenty fixed texts by the checksum of all of them, made from what users were told.
    QByteArray texts;
    for (const quint32 code :
         { 0xC0000005, 0x80000002, 0x80000003, 0x80000004, 0xC0000006, 0xC000001D, 0xC0000025,
           0xC0000026, 0xC000008C, 0xC000008D, 0xC000008E, 0xC000008F, 0xC0000090, 0xC0000091,
           0xC0000092, 0xC0000093, 0xC0000094, 0xC0000095, 0xC0000096, 0xC00000FD })
        texts += exceptionCodeText(code).value;
    EXPECT_EQ(2335, texts.size());
    EXPECT_EQ(35230, qChecksum(texts.constData(), 2335)); // CRC-16, ISO 3309
    EXPECT_EQ("EXCEPTION: The thread used up its stack.", text(0xC00000FD));
}

TEST(FileOps, TellFilesFromFolders)
{
    const ScratchFolder scratch;
    makeFile(L"X:\\scratch\\file", old, 700);
    // Path, and what it is: a file, a folder or nothing.
    // clang-format off
    const char *const rows[][2] = {
        { "X:\\scratch\\file", "file" }, { "X:\\scratch", "folder" }, { "X:\\scratch\\", "folder" },
        { "X:\\scratch\\\\", "folder" }, { "X:\\nothing", "" }, { "X:", "" }, { "", "" },
    };
    // clang-format on
    for (const auto &row : rows) {
        const bool isFile = q(row[1]) == q("file");
        EXPECT_EQ(isFile, fileExists(q(row[0]))) << row[0];
        EXPECT_EQ(q(row[1]) == q("folder"), folderExists(q(row[0]))) << row[0];
        qint64 size = -1;
        EXPECT_EQ(isFile, fileTimeAndSize(q(row[0]), nullptr, &size)) << row[0];
        EXPECT_EQ(isFile ? 700 : -1, size);
        EXPECT_EQ(QString(), isFile ? QString() : deleteFile(q(row[0])));
    }
    const HANDLE held = CreateFileW(L"X:\\scratch\\file", GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                                    0, nullptr); // does not hinder who only asks
    TimeStamp time = 0;
    EXPECT_TRUE(fileTimeAndSize(q("X:\\scratch\\file"), &time, nullptr));
    CloseHandle(held);
    EXPECT_EQ(30, daysSince(time));
    fs::create_directory(L"X:\\scratch\\folder");
    fs::current_path(L"X:\\scratch");
    EXPECT_FALSE(removeFolder(q("folder"))); // it is looked for below itself
    EXPECT_TRUE(removeFolder(q("X:\\scratch\\folder")));
    fs::current_path(L"X:\\");
}

// With the long-path prefix a full stop at the end belongs to the name; without it the platform
// drops the full stop and so finds nothing.
TEST(FileOps, PutThePrefixInFrontFrom240UnitsOn)
{
    for (const int length : { 239, 240, 241 }) {
        SCOPED_TRACE(length);
        const ScratchFolder scratch;
        const QString above = q("X:\\scratch\\") + run(200);
        fs::create_directory(above.toStdWString());
        const QString path = above + q("\\") + run(length - above.size() - 2) + q(".");
        const std::wstring verbatim = L"\\\\?\\" + path.toStdWString();
        CreateDirectoryW(verbatim.c_str(), nullptr);
        EXPECT_EQ(length >= 240, folderExists(path));
        EXPECT_EQ(length >= 240, folderExists(path + q("\\")));
        RemoveDirectoryW(verbatim.c_str());
        CloseHandle(
            CreateFileW(verbatim.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW, 0, nullptr));
        EXPECT_EQ(length >= 240, fileExists(path));
        EXPECT_FALSE(fileTimeAndSize(path, nullptr, nullptr)); // opened by the plain path
        EXPECT_EQ(QString(), deleteFile(path));
        EXPECT_EQ(length < 240, DeleteFileW(verbatim.c_str()) != 0) << "it was left";
    }
}

/// What a listing yields of each entry: the full path behind X:\scratch\, and the size.
QString listed(DirListingHandle &handle)
{
    QString entries;
    while (DirListing::next(handle))
        entries +=
            DirListing::fullPath(handle).mid(11)
            + (DirListing::isFolder(handle) ? q("\\ ") : q(":%1 ").arg(DirListing::size(handle)));
    EXPECT_FALSE(DirListing::next(handle));
    return entries;
}

TEST(DirListing, YieldsWhatItIsAskedFor)
{
    const ScratchFolder scratch;
    int size = 0;
    for (const wchar_t *name : { L"c.txt", L"B.txt", L"a.log", L".git\\x", L"d.TXT", L"e.txt\\y" })
        makeFile(scratch.path / name, old, ++size);
    DirListingHandle handle;
    DirListing::create(handle);
    const auto list = [&handle](const char *folder, bool includeFolders, bool sort,
                                bool descending) {
        DirListing::open(handle, q(folder), includeFolders, false, sort, descending);
        return listed(handle);
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
    EXPECT_EQ(q("c.txt:1 .git\\ no:0 "), listed(handle));
    DirListing::destroy(handle);
    EXPECT_EQ(nullptr, handle.listing);
}

TEST(DirListing, TakesTheCreationTimeWhereTheLastWriteTimeIsNone)
{
    const ScratchFolder scratch;
    makeFile(scratch.path / L"file", old);
    DirListingHandle handle;
    DirListing::create(handle);
    DirListing::open(handle, q("X:\\scratch"), true, true, false, false);
    ASSERT_TRUE(DirListing::next(handle));
    EXPECT_EQ(30, daysSince(DirListing::time(handle)));
    EXPECT_EQ(INVALID_HANDLE_VALUE, handle.listing->findHandle);
    DirListing::open(handle, q("X:\\scratch"), true, false, false, false);
    ASSERT_TRUE(DirListing::next(handle));
    EXPECT_EQ(30, daysSince(DirListing::time(handle)));
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

// Behind the prefix a doubled backslash is an error, so only without it the folder is found; and
// a pattern that does not fit with its prefix, 4 units or 6 on the network, finds nothing.
TEST(DirListing, PutsThePrefixInFrontAbove240Units)
{
    const struct
    {
        QString above;
        int patternLength;
        bool isListed;
    } rows[] = {
        { q("X:\\scratch\\\\"), 239, true },      { q("X:\\scratch\\\\"), 240, true },
        { q("X:\\scratch\\\\"), 241, false },     { q("X:\\scratch\\"), 496, true },
        { q("X:\\scratch\\"), 497, false },       { q("\\\\server\\share\\"), 494, true },
        { q("\\\\server\\share\\"), 495, false },
    };
    for (const auto &row : rows) {
        const ScratchFolder scratch;
        const QString above = row.above + run(row.patternLength > 250 ? 240 : 100, 'm');
        const QString folder = above + q("\\") + run(row.patternLength - above.size() - 3);
        fs::create_directories(folder.toStdWString());
        const std::wstring file = (folder + q("\\f")).toStdWString();
        makeFile(file, old);
        DirListingHandle handle;
        DirListing::create(handle);
        DirListing::open(handle, folder, true, true, false, false);
        EXPECT_EQ(row.isListed, DirListing::next(handle)) << row.patternLength;
        DeleteFileW(file.c_str()); // too long for the scratch folder to remove
        RemoveDirectoryW(folder.toStdWString().c_str());
        RemoveDirectoryW(above.toStdWString().c_str());
    }
}

TEST(SweepFolder, KeepsIgnoredEntries)
{
    const ScratchFolder scratch;
    for (const wchar_t *file : { L"keep\\a.SAV", L"skip\\b.sav\\c", L"skip\\d" })
        makeFile(scratch.path / file, old, 512);
    const QStringList suffixes = { q("x"), q(".sav") };
    QString errors;
    QString log;
    qint32 count = 0;
    qint64 kiB = 0;
    EXPECT_FALSE(sweepFolder(q("X:\\scratch"), true, true, 0, &suffixes, &errors, &count, &kiB,
                             &log, false, nullptr));
    EXPECT_EQ(q("   [X:\\scratch]: \n"
                "     -dir [keep]\n   [X:\\scratch\\keep]: \n     -ignS a.SAV   '.sav'\n"
                "     -dir [skip]\n   [X:\\scratch\\skip]: \n     -ign [b.sav]  '.sav'\n"
                "     -del d\n"),
              log);
    EXPECT_EQ(q("Error deleting folder X:\\scratch\\skip:Error 145: ")
                  + q(systemMessage(145).c_str()) + q(".\n"),
              errors);
    EXPECT_EQ(1, count);
    EXPECT_EQ(1, kiB);
    // What is ignored is left, though not kept; what is passed over does not count.
    fs::remove_all(scratch.path / L"keep");
    const auto sweep = [&suffixes](bool recurse) {
        return sweepFolder(q("X:\\scratch\\skip"), false, recurse, 0, &suffixes, nullptr, nullptr,
                           nullptr, nullptr, false, nullptr);
    };
    EXPECT_FALSE(sweep(true));
    EXPECT_TRUE(sweep(false));
}

TEST(SweepFolder, PrintsProgressWhenMoreThanFiveSecondsHavePassed)
{
    const ScratchFolder scratch;
    TimeStamp now = 0;
    currentTime(now);
    for (const TimeStamp age : { 4, 6 }) {
        TimeStamp stamp = now - age;
        const std::string printed = flushedBy([&stamp] {
            sweepFolder(q("X:\\scratch"), false, true, 0, nullptr, nullptr, nullptr, nullptr,
                        nullptr, false, &stamp);
        });
        EXPECT_EQ(age > 5 ? "     ...X:\\scratch...\n" : "", printed);
        EXPECT_EQ(age > 5, stamp >= now);
    }
}

TEST(SweepFolder, DoesWithoutWhatIsOptional)
{
    const ScratchFolder scratch;
    makeFile(scratch.path / L"sub\\a", old);
    makeFile(scratch.path / L"b", old);
    QString log;
    const auto sweep = [](bool recurse, bool namesOnly, QString *to) {
        return sweepFolder(q("X:\\scratch"), true, recurse, 14 * 1440, nullptr, nullptr, nullptr,
                           nullptr, to, namesOnly, nullptr);
    };
    EXPECT_FALSE(sweep(false, true, &log)); // sub is passed over, so the folder stays
    EXPECT_EQ(q("b\n"), log);
    EXPECT_EQ((Tree{ L"sub", L"sub\\a" }), treeOf(scratch.path));
    EXPECT_TRUE(sweep(true, false, nullptr));
    EXPECT_FALSE(folderExists(q("X:\\scratch")));
    EXPECT_TRUE(sweep(true, false, nullptr)); // it is gone
}

DWORD WINAPI sweepDeepTree(void *deletedCount)
{
    const bool isEmpty =
        sweepFolder(q("X:\\scratch"), true, true, 1, nullptr, nullptr,
                    static_cast<qint32 *>(deletedCount), nullptr, nullptr, false, nullptr);
    return isEmpty ? 1 : 0;
}

constexpr SIZE_T halfOfTheStack = 1048576; // bytes, of what the program's thread has

// The last folder is one whose entries are not seen.
TEST(SweepFolder, NeedsLittleStackForTheDeepestTree)
{
    const ScratchFolder scratch;
    std::wstring folder = L"X:\\scratch";
    while (folder.size() < 494)
        folder += L"\\d";
    makeFile(folder + L"\\o", old);
    fs::create_directory(folder + L"\\e");
    qint32 deletedCount = 0;
    const HANDLE thread = CreateThread(nullptr, halfOfTheStack, sweepDeepTree, &deletedCount,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    EXPECT_EQ(WAIT_OBJECT_0, WaitForSingleObject(thread, 60000));
    DWORD isEmpty = 0;
    GetExitCodeThread(thread, &isEmpty);
    CloseHandle(thread);
    EXPECT_TRUE(isEmpty);
    EXPECT_EQ(1, deletedCount);
    EXPECT_FALSE(fs::exists(L"X:\\scratch"));
}

TEST(SweepFolder, LeavesNothingOpen)
{
    const ScratchFolder scratch;
    for (const wchar_t *file : { L"a\\held", L"a\\old", L"b\\c\\old" })
        makeFile(scratch.path / file, old);
    makeFile(scratch.path / L"b\\young", young);
    const HANDLE held =
        CreateFileW(L"X:\\scratch\\a\\held", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    QString errors;
    EXPECT_FALSE(sweepFolder(q("X:\\scratch"), false, true, 1440 * 14, nullptr, &errors, nullptr,
                             nullptr, nullptr, false, nullptr));
    EXPECT_NE(QString(), errors);
    CloseHandle(held);
    EXPECT_EQ((Tree{ L"a", L"a\\held", L"b", L"b\\young" }), treeOf(scratch.path));
    for (const wchar_t *left : { L".", L"a", L"a\\held", L"b", L"b\\young" }) {
        const HANDLE alone = CreateFileW((scratch.path / left).c_str(), GENERIC_READ, 0, nullptr,
                                         OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        EXPECT_NE(INVALID_HANDLE_VALUE, alone) << testing::PrintToString(std::wstring(left));
        CloseHandle(alone);
    }
}

} // namespace
