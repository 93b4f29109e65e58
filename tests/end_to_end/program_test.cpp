// The whole program on its command line: what it prints, its exit codes, what is left.
#include "app/folder_run.h"
#include "app/free_space.h"

#include "support/files.h"
#include "support/program.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

#include <map>

namespace {

/// The whole report on a folder; the progress line is printed on the first one only.
std::string reportOn(const std::string &folder, const std::string &deleted,
                     const std::string &days = "14", const std::string &details = "",
                     bool isFirst = true)
{
    return "\nStarting to delete files in folder '" + folder + "', File have to be older than "
           + days + " days.\n" + (isFirst ? "     ..." + folder + "...\n" : "") + "  " + deleted
           + " Kib). \n\n" + details + "  Done. Free drive space in " + folder + " is # MiB\n\n";
}

TEST(CommandLine, ShowsTheUsageForFewerThanThreeArguments)
{
    const std::string usage =
        "\nUsage:\n\n  kxDeleteOldFiles   directory  [-do <days_old>]  [-v]\n\n"
        "  directory: The directory to remove files from.\n"
        "             Subfolders are automatically searched as well. Empty subfolders are "
        "deleted.\n"
        "             The directory can contain a folder with a * wildcard to be replaced by ALL "
        "folder found\n"
        "  -do <days_old>: This tool does not delete files if they are not older than <days_old> "
        "days. Default: 14 days\n  -v: Enable verbose messages.\n"
        "Note: There is no required order for the commandline flags\n\n\nExample commandlines: \n"
        "   Delete files from folder C:\\temp \n       kxDeleteOldFiles C:\\temp -do 7  \n\n"
        "   Delete files from the temp folder of all users\n"
        "       kxDeleteOldFiles -do 14 c:\\Users\\*\\AppData\\Local\\Temp    \n\n"
        "   Delete files from the temp folder of all users starting with 'm'\n"
        "       kxDeleteOldFiles -do 14 c:\\Users\\m*\\AppData\\Local\\Temp \n\n\n";
    const ScratchFolder scratch(L"a");
    for (const wchar_t *arguments : { L"", L"X:\\scratch", L"X:\\scratch -v" }) {
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(usage, run.output);
        EXPECT_EQ(0xFFFFFFFFu, run.exitCode);
    }
    EXPECT_EQ(L"a", treeOf(scratch.path));
}

TEST(CommandLine, ReadsItsOptions)
{
    // Arguments, what they come to, and the days, the refused number or the missing folder.
    QList<QStringList> rows = rowsOf(3, R"(
            X:\scratch~-DO~40 kept 40       -do~7~x:~-V~X:\scratch log 7    X:\scratch~-do~-5 all -5
            X:\scratch~-do~"~+0~" all 0     X:\scratch~-do~24855 kept 24855
            X:\scratch~-do~24856 all 24856  X:\scratch~-do~7%d refused 7%d  X:\scratch~-do~-v refused -v
            X:\scratch~-do~2147483648 refused 2147483648                    X:\scratch~-v~-do missing -do
            X:\scratch~-v~-do7 missing -do7        -do~7~-v missing ''      -v~-v~C: missing C:
            -v~-v~X:\scratch\a missing X:\scratch\a                         -v~-v~%s%n missing %s%n
            -v~-v~* nothing *                      -v~-v~X:\no\* nothing X:\no\*)");
    // The ellipsis, byte 0x85 of code page 1252, is not white space around a number.
    for (const char *days : { "14%1", "%114", " 14%1 " })
        rows << QStringList{ q("X:\\scratch -do \"") + q(days).replace(q("%1"), QChar(0x2026))
                                 + q("\""),
                             q("refused"), q(days).replace(q("%1"), q("\x85")) };
    for (const QStringList &row : rows) {
        SCOPED_TRACE(row[0].toStdString());
        const ScratchFolder scratch;
        makeFile(scratch.path / L"a", old, 1536);
        makeFile(scratch.path / L"b", -10); // dated in the future
        const std::string last = std::string(row[2].toLatin1().constData());
        const std::string log = "\n   [X:\\scratch]: \n     -del a\n     -ignT b\n\n\n";
        const std::map<QString, std::pair<std::string, std::wstring>> results = {
            { q("kept"), { reportOn("X:\\scratch", "0 files deleted (0", last), L"a|b" } },
            { q("log"), { reportOn("X:\\scratch", "1 files deleted (2", last, log), L"b" } },
            { q("all"), { reportOn("X:\\scratch", "2 files deleted (2", last), L"" } },
            { q("refused"), { "Error: Unable to convert " + last + " into a number!\n", L"a|b" } },
            { q("missing"), { "Warning: directory " + last + " does not exist!\n", L"a|b" } },
            { q("nothing"), { "Searching for folders matching '" + last + "'.", L"a|b" } },
        };
        const ProgramRun run = runProgram(row[0].toStdWString());
        EXPECT_EQ(results.at(row[1]).first, run.output);
        EXPECT_EQ(results.at(row[1]).second, treeOf(scratch.path));
        EXPECT_EQ(row[1] == q("refused") ? 3u : 0u, run.exitCode);
    }
}

TEST(CommandLine, StopsOutsideAnInstallation)
{
    const std::wstring program = L"X:\\apps\\bin\\win64\\lost.exe";
    const ScratchFolder scratch(L"a");
    // Arguments, the last flag's value as the print routine shows it, and all flags' values.
    QList<QStringList> rows = rowsOf(3, R"(
            -do~abc '' ''   -kxroot~a/~-KXROOT~b b\ a/b\
            -kxRoot~a%%s%%%*d%s a%s%0(null)\ a%s%0(null)\ )");
    // Each of the hundred takes two values in three characters.
    const QString many = q("\xFC\xE4") + repeated(100, '0') + q("\\");
    rows << QStringList{ q("-kxRoot \xFC&#228;") + q("%*d").repeated(100), many, many };
    for (const QStringList &row : rows) {
        SCOPED_TRACE(row[0].toStdString());
        const ProgramRun run = runProgram(L"X:\\scratch " + row[0].toStdWString(), program);
        EXPECT_EQ("Unable to get KX Root path; This executable was not started from a KX "
                  "directory.\n\n (Tried: 'X:\\apps\\bin\\win64\\lost.exe', '"
                      + std::string(row[1].toLatin1().constData())
                      + "')\n\n[-kxRoot flag: " + std::string(row[2].toLatin1().constData())
                      + ": invalid]\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: X:\\apps\\: "
                        "invalid]\n[KX_ROOT: : invalid]",
                  run.output);
        EXPECT_EQ(1u, run.exitCode);
    }
    // What the print routine refuses ends the message, not the program. A placeholder in one text
    // is filled with the next.
    const ProgramRun refused = runProgram(L"X:\\scratch -kxRoot a%n", program);
    EXPECT_THAT(refused.output, testing::EndsWith("lost.exe', 'a"));
    EXPECT_EQ(1u, refused.exitCode);
    EXPECT_THAT(runProgram(L"X:\\scratch -kxRoot %3", program).output,
                testing::HasSubstr("lost.exe', '\n[-kxRoot flag: "));
    // The program's name is cut at 250 bytes, within the folder of 43; two folders up from there.
    const std::wstring deep =
        L"X:\\apps\\" + std::wstring(200, 'd') + L"\\" + std::wstring(43, 'e');
    EXPECT_THAT(runProgram(L"X:\\scratch -do 14", deep + L"\\l.exe").output,
                testing::HasSubstr("\n[appPath: X:\\: invalid]"));
    EXPECT_EQ(L"a", treeOf(scratch.path));
}

TEST(Sweep, DeletesOldFilesAndTheFoldersThatThisEmpties)
{
    const ScratchFolder scratch(L"deep\\er\\young|gone\\a\\old|h\\\x0416%s held|h\\old");
    makeFile(scratch.path / L"%s 100%\\%n.txt", old, 511);
    makeFile(scratch.path / L"deep\\er\\old", 14.001, 1535);
    makeFile(scratch.path / L"hidden", old, 512, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    makeFile(scratch.path / L"just young", 13.999);
    makeFile(scratch.path / L"readonly", old, 2000000, FILE_ATTRIBUTE_READONLY);
    makeFile(scratch.path / L"\x00FC\\\xFEFF\x0416"); // outside Latin-1; a byte order mark
    fs::create_directory(scratch.path / L"void");
    const HANDLE held = holdOpen(scratch.path / L"h\\\x0416%s held");
    const ProgramRun run = runProgram(L"X:\\scratch\\ -v -v");
    CloseHandle(held);
    const std::string details =
        "\nErrors:\n X:\\scratch\\h\\?%s held:Unable to delete file; " + systemError(32)
        + "..\n \n\n\n   [X:\\scratch\\]: \n     -dir [%s 100%]\n   [X:\\scratch\\%s 100%]: \n"
          "     -del %n.txt\n     -dir [deep]\n   [X:\\scratch\\deep]: \n     -dir [er]\n"
          "   [X:\\scratch\\deep\\er]: \n     -del old\n     -ignT young\n     -dir [gone]\n"
          "   [X:\\scratch\\gone]: \n     -dir [a]\n   [X:\\scratch\\gone\\a]: \n     -del old\n"
          "     -dir [h]\n   [X:\\scratch\\h]: \n     -del old\n     -del ?%s held\n"
          "     -del hidden\n     -ignT just young\n     -del readonly\n     -dir [void]\n"
          "   [X:\\scratch\\void]: \n     -dir [\xFC]\n   [X:\\scratch\\\xFC]: \n     -del "
          "??\n\n\n";
    EXPECT_EQ(reportOn("X:\\scratch\\", "7 files deleted (1 955", "14", details), run.output);
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ(L"deep|deep\\er|deep\\er\\young|h|h\\\x0416%s held|just young", treeOf(scratch.path));
}

TEST(Sweep, OfTheInstallationMakesLaterRunsFindNone)
{
    const std::wstring program = L"X:\\apps\\bin\\win64\\lost.exe";
    makeFile(L"X:\\apps\\sub\\cfg_global\\globalconfig.ini");
    EXPECT_EQ(0u, runProgram(L"-do 14 X:\\apps", program).exitCode);
    EXPECT_FALSE(fs::exists(L"X:\\apps\\sub"));
    EXPECT_EQ(1u, runProgram(L"-do 14 X:\\apps", program).exitCode);
}

TEST(Wildcards, RunEveryMatchingFolder)
{
    // Directory, above the folders that are run, these with the number of their deleted files or
    // "-" for the warning, and what is left of ma, Me, x.
    for (const QStringList &row : rowsOf(4, R"(
            X:\scratch\M*\T X:\scratch\ ma\T|1|Me\T|1|mi\T|- x   X:\scratch\m*no X:\scratch\ ma|1|Me|1|mi|0 x
            X:\scratch\m*\ X:\scratch\ ma\|1|Me\|1|mi\|0 x       X:\s*\m*\T*\ X:\scratch\ ma\T\|1|Me\T\|1 x
            X:/scratch/m* '' '' maMex    X:/scratch/*/T X:/scratch/\ ma|1|Me|1|mi|0|x|1 '')")) {
        SCOPED_TRACE(row[0].toStdString());
        const ScratchFolder scratch(L"ma\\T\\old|Me\\T\\old|x\\T\\old|m file");
        fs::create_directory(scratch.path / L"mi");
        std::string expected = "Searching for folders matching '" + row[0].toStdString() + "'.";
        const QStringList runs = row[2].split(QLatin1Char('|'));
        for (int i = 0; i + 1 < runs.size(); i += 2) {
            const std::string folder = (row[1] + runs[i]).toStdString();
            const std::string deleted = runs[i + 1].toStdString();
            expected += deleted == "-"
                            ? "Warning: directory " + folder + " does not exist!\n"
                            : reportOn(folder, deleted + " files deleted (0", "14", "", i == 0);
        }
        EXPECT_EQ(expected, runProgram(L"-do 14 " + row[0].toStdWString()).output);
        for (const char *name : { "ma", "Me", "x" })
            EXPECT_EQ(row[3].contains(q(name)),
                      fs::exists(scratch.path / q(name).toStdWString() / L"T\\old"));
        EXPECT_TRUE(fs::exists(scratch.path / L"m file") && fs::exists(scratch.path / L"mi"));
    }
}

TEST(FreeSpace, IsThatOfTheDrive)
{
    ULARGE_INTEGER bytes;
    GetDiskFreeSpaceExW(L"X:\\", &bytes, nullptr, nullptr);
    EXPECT_NEAR(static_cast<double>(bytes.QuadPart >> 20), freeDriveSpaceMiB(q("X:\\a")), 2000);
    // A relative root is looked up in the current folder; one of 255 units does not fit.
    for (const std::size_t length : { 251U, 252U }) {
        const std::wstring folder = L"\\\\?\\X:\\" + std::wstring(length, L'r');
        CreateDirectoryW(folder.c_str(), nullptr);
        CreateDirectoryW((folder + L"\\s").c_str(), nullptr);
    }
    for (const auto &[path, isKnown] : std::initializer_list<std::pair<QString, bool>>{
             { q("X:\\a"), true },
             { q("X:/a"), true },
             { q("X:"), false },
             { q("Q:\\no such drive"), false },
             { q("\\\\server\\share\\a"), true },
             { q("\\\\server\\share"), false },
             { q("\\\\server"), false },
             { q("//server/share/a"), false },
             { repeated(251, 'r') + q("\\s\\a"), true },
             { repeated(252, 'r') + q("\\s\\a"), false } })
        EXPECT_EQ(isKnown, freeDriveSpaceMiB(path) != 1000) << path;
}

TEST(FolderRun, HandsOnItsReportAtOnce)
{
    const ScratchFolder scratch;
    EXPECT_THAT(flushedBy([] { runFolder(q("X:\\scratch"), 14, false); }),
                testing::EndsWith(" MiB\n\n"));
    EXPECT_EQ("Warning: directory X:\\no does not exist!\n",
              flushedBy([] { runFolder(q("X:\\no"), 14, false); }));
}

} // namespace
