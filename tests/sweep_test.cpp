#include "sweep/dir_listing.h"
#include "sweep/error_text.h"
#include "sweep/file_ops.h"
#include "sweep/sweep.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

namespace {

constexpr quint64 epoch = 116444736000000000u; // 1970 in ticks of 100 ns since 1601
constexpr quint64 second = 10000000u;

std::string latin1(const FixedWideString &text)
{
    return text.toQString().toLatin1().toStdString();
}

qint64 daysSince(TimeStamp time)
{
    TimeStamp now = 0;
    currentTime(now);
    return (now - time) / 86400;
}

TEST(FileTime, CountsWholeSecondsFrom1970)
{
    const auto secondsOf = [](quint64 ticks) {
        TimeStamp seconds = 7;
        fileTimeToSeconds(seconds, static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32));
        return seconds;
    };
    EXPECT_EQ(0, secondsOf(epoch));
    EXPECT_EQ(0, secondsOf(epoch + second - 1));
    EXPECT_EQ(1, secondsOf(epoch + second));
    EXPECT_EQ(-1, secondsOf(epoch - second));
    EXPECT_EQ(0, secondsOf(epoch - second + 1));
    EXPECT_EQ(-11644473600, secondsOf(0));
    EXPECT_EQ(910692730085, secondsOf(0x7FFFFFFFFFFFFFFF));
}

TEST(FileTime, HasElapsedOnlyBehindTheSpan)
{
    TimeStamp stamp = 100;
    const TimeStamp end = 105;
    const TimeStamp behind = 106;
    EXPECT_FALSE(hasElapsed(stamp, 5, true, &end));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, false, &behind));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true, &behind));
    EXPECT_EQ(106, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true));
    EXPECT_FALSE(hasElapsed(stamp, 5, false)); // it is the current time now

    EXPECT_EQ(2147472000, minutesToSeconds(daysToMinutes(24855)));
    EXPECT_EQ(-2147408896, minutesToSeconds(daysToMinutes(24856)));
    EXPECT_EQ(2147483520, daysToMinutes(1491308));
    EXPECT_EQ(-2147482336, daysToMinutes(1491309));
}

TEST(ErrorText, WordsACodeInOneLine)
{
    const struct
    {
        quint32 code;
        std::string text;
    } rows[] = {
        { 0, "No Error." },
        { 126, "A DLL is missing." },
        { 5, "Error 5: " + systemMessage(5) + "." },
        { 0xC00000FD, "EXCEPTION: The thread used up its stack." },
        { 0xEFFFFFFF, "ERROR code -268435457. (No system message found)" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.text, latin1(systemErrorText(row.code)));
    SetLastError(145);
    EXPECT_EQ("Error 145: " + systemMessage(145) + ".", latin1(systemErrorText(lastErrorCode)));
    EXPECT_EQ("..", latin1(systemErrorText(145)).substr(latin1(systemErrorText(145)).size() - 2));
}

TEST(FileOps, TellFilesFromFolders)
{
    const ScratchFolder scratch;
    makeFile(L"X:\\scratch\\file", old, 700);
    const struct
    {
        const char *path;
        bool isFile;
        bool isFolder;
    } rows[] = {
        { "X:\\scratch\\file", true, false },
        { "X:\\scratch", false, true },
        { "X:\\scratch\\", false, true },
        { "X:\\nothing", false, false },
        { "X:", false, false },
        { "", false, false },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        EXPECT_EQ(row.isFile, fileExists(q(row.path)));
        EXPECT_EQ(row.isFolder, folderExists(q(row.path)));
        qint64 size = -1;
        EXPECT_EQ(row.isFile, fileTimeAndSize(q(row.path), nullptr, &size));
        EXPECT_EQ(row.isFile ? 700 : -1, size);
        EXPECT_EQ(QString(), row.isFile ? QString() : deleteFile(q(row.path)));
    }
    TimeStamp time = 0;
    EXPECT_TRUE(fileTimeAndSize(q("X:\\scratch\\file"), &time, nullptr));
    EXPECT_EQ(30, daysSince(time));
}

// With the long-path prefix a full stop at the end belongs to the name; without it the platform
// drops the full stop and so finds nothing.
TEST(FileOps, PutThePrefixInFrontFrom240UnitsOn)
{
    for (const int length : { 239, 240, 241 }) {
        const ScratchFolder scratch;
        const QString folder = q("X:\\scratch\\") + run(200);
        fs::create_directory(folder.toStdWString());
        const QString file = folder + q("\\") + run(length - folder.size() - 2) + q(".");
        CloseHandle(CreateFileW((L"\\\\?\\" + file.toStdWString()).c_str(), GENERIC_WRITE, 0,
                                nullptr, CREATE_NEW, 0, nullptr));
        ASSERT_EQ(2u, treeOf(scratch.path).size());
        EXPECT_EQ(length >= 240, fileExists(file)) << length;
        EXPECT_EQ(QString(), deleteFile(file));
        EXPECT_EQ(length >= 240 ? 1u : 2u, treeOf(scratch.path).size()) << length;
        DeleteFileW((L"\\\\?\\" + file.toStdWString()).c_str());
    }
}

QString namesIn(const QString &folder, bool includeFolders, bool sort, bool descending,
                const QString &suffix = QString())
{
    DirListingHandle handle;
    DirListing::create(handle);
    DirListing::addSuffixFilter(handle, suffix);
    DirListing::open(handle, folder, includeFolders, false, sort, descending);
    QString names;
    while (DirListing::next(handle))
        names += DirListing::name(handle) + q(DirListing::isFolder(handle) ? "\\ " : " ");
    EXPECT_FALSE(DirListing::next(handle));
    return names;
}

TEST(DirListing, YieldsWhatItIsAskedFor)
{
    const ScratchFolder scratch;
    for (const wchar_t *name : { L"c.txt", L"B.txt", L"a.log", L".git\\x", L"d.TXT", L"e.txt\\y" })
        makeFile(scratch.path / name, old);
    const QString folder = q("X:\\scratch");
    EXPECT_EQ(q(".git\\ B.txt a.log c.txt d.TXT e.txt\\ "), namesIn(folder, true, true, false));
    EXPECT_EQ(q("d.TXT c.txt a.log B.txt "), namesIn(folder + q("/"), false, true, true));
    EXPECT_EQ(q(".git\\ a.log e.txt\\ "), namesIn(folder, true, true, false, q(".LOG")));
    EXPECT_EQ(q("c.txt "), namesIn(folder + q("\\C*"), true, false, false));
    EXPECT_EQ(q("c.txt "), namesIn(folder + q("\\c.txt"), true, false, false));
    EXPECT_EQ(q(""), namesIn(folder + q("\\nothing"), true, true, false));
}

TEST(DirListing, KnowsPathTimeAndSizeFromTheSearchAndFromTheLists)
{
    const ScratchFolder scratch;
    makeFile(scratch.path / L"file", old, 1234);
    for (const bool readAllFirst : { false, true }) {
        DirListingHandle handle;
        DirListing::create(handle);
        DirListing::open(handle, q("X:/scratch"), true, readAllFirst, false, false);
        ASSERT_TRUE(DirListing::next(handle));
        EXPECT_EQ(q("X:\\scratch\\file"), DirListing::fullPath(handle));
        EXPECT_EQ(30, daysSince(DirListing::time(handle)));
        EXPECT_EQ(1234, DirListing::size(handle));
        EXPECT_EQ(readAllFirst, handle.listing->findHandle == INVALID_HANDLE_VALUE);
        if (readAllFirst)
            continue;
        // No file system here keeps such times, so they are put into the search result itself.
        WIN32_FIND_DATAW &found = handle.listing->findData;
        found.ftCreationTime = { 0xD53E8000 + 5 * 10000000, 0x019DB1DE }; // 5 s after 1970 began
        found.ftLastWriteTime = { 0xFFFFFFFF, 0 };
        EXPECT_EQ(5, DirListing::time(handle));
        found.ftLastWriteTime.dwHighDateTime = 1;
        EXPECT_EQ(-11644472741, DirListing::time(handle)); // 858.99 s after 1601 began
    }
}

// Behind the prefix a doubled backslash is an error, so only without it the folder is found.
TEST(DirListing, PutsThePrefixInFrontAbove240Units)
{
    for (const int patternLength : { 239, 240, 241 }) {
        const ScratchFolder scratch;
        const QString parent = q("X:\\scratch\\") + run(200);
        const QString folder = parent + q("\\\\") + run(patternLength - parent.size() - 4);
        makeFile(fs::path(folder.toStdWString()) / L"file", old);
        EXPECT_EQ(q(patternLength <= 240 ? "file " : ""), namesIn(folder, true, false, false));
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
                "     -dir [keep]\n"
                "   [X:\\scratch\\keep]: \n"
                "     -ignS a.SAV   '.sav'\n"
                "     -dir [skip]\n"
                "   [X:\\scratch\\skip]: \n"
                "     -ign [b.sav]  '.sav'\n"
                "     -del d\n"),
              log);
    EXPECT_EQ(q("Error deleting folder X:\\scratch\\skip:Error 145: ")
                  + q(systemMessage(145).c_str()) + q(".\n"),
              errors);
    EXPECT_EQ(1, count);
    EXPECT_EQ(1, kiB);
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

} // namespace
