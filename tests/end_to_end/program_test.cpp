#include "support/files.h"
#include "support/program.h"

#include <gmock/gmock.h>

#include <sstream>

namespace {

const std::string rule = ".----------------------------------------------------------------\n";
const std::string banner = rule + ". kxDeleteOldFiles  8.4.02\n"
                           + ". Deletes old files and the folders that this empties.\n" + rule;

std::string start(const std::string &folder, const std::string &days = "14")
{
    return "\nStarting to delete files in folder '" + folder + "', File have to be older than "
           + days + " days.\n";
}

std::string progress(const std::string &folder) { return "     ..." + folder + "...\n"; }

std::string end(const std::string &folder)
{
    return "  Done. Free drive space in " + folder + " is # MiB\n\n";
}

TEST(Program, HasAVersionResource)
{
    const wchar_t *const resource = MAKEINTRESOURCEW(1);
    const HMODULE program = LoadLibraryExW(installedProgram, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const HRSRC found = FindResourceW(program, resource, MAKEINTRESOURCEW(16)); // RT_VERSION
    ASSERT_NE(nullptr, found);
    const std::wstring text(
        static_cast<const wchar_t *>(LockResource(LoadResource(program, found))),
        SizeofResource(program, found) / sizeof(wchar_t));
    const std::wstring key(L"ProductVersion\0", 15);
    EXPECT_EQ(L"8.4.02", text.substr(text.find(key) + key.size(), 6));
    FreeLibrary(program);
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
    const ScratchFolder scratch;
    makeFile(scratch.path / L"a", old);
    for (const wchar_t *arguments : { L"", L"X:\\scratch", L"X:\\scratch -v" }) {
        const ProgramRun run = runProgram(arguments);
        EXPECT_EQ(banner + usage, run.output);
        EXPECT_EQ(0xFFFFFFFFu, run.exitCode);
    }
    EXPECT_EQ(Tree{ L"a" }, treeOf(scratch.path));
}

TEST(CommandLine, ReadsItsOptions)
{
    const std::string all = "  1 files deleted (2 Kib). \n\n";
    const std::string none = "  0 files deleted (0 Kib). \n\n";
    const auto swept = [](const std::string &days, const std::string &count,
                          const std::string &log = "") {
        return start("X:\\scratch", days) + progress("X:\\scratch") + count + log
               + end("X:\\scratch");
    };
    const auto missing = [](const std::string &folder) {
        return "Warning: directory " + folder + " does not exist!\n";
    };
    const struct
    {
        const wchar_t *arguments;
        std::string output;
        unsigned long exitCode = 0;
        double daysOld = old;
    } rows[] = {
        { L"X:\\scratch -DO 40", swept("40", none) },
        { L"-do 7 x: -V X:\\scratch", swept("7", all, "\n   [X:\\scratch]: \n     -del a\n\n\n") },
        { L"X:\\scratch -do -5", swept("-5", all), 0, -10 }, // dated in the future
        { L"X:\\scratch -do \" +0 \"", swept("0", all), 0, -10 },
        { L"X:\\scratch -do 24855", swept("24855", none) },
        { L"X:\\scratch -do 24856", swept("24856", all) }, // 32 bits of seconds wrap
        { L"X:\\scratch -do abc", "Error: Unable to convert abc into a number!\n", 3 },
        { L"X:\\scratch -do 7%d", "Error: Unable to convert 7%d into a number!\n", 3 },
        { L"X:\\scratch -do 2147483648", "Error: Unable to convert 2147483648 into a number!\n",
          3 },
        { L"X:\\scratch -do -v", "Error: Unable to convert -v into a number!\n", 3 },
        { L"X:\\scratch -v -do", missing("-do") },
        { L"X:\\scratch -v -do7", missing("-do7") },
        { L"-do 7 -v", missing("") },
        { L"-v -v \"\"", missing("") },
        { L"-v -v C:", missing("C:") },
        { L"-v -v X:\\scratch\\a", missing("X:\\scratch\\a") },
        { L"-v -v %s%n\xFC", missing("%s%n\xFC") },
        { L"-v -v *", "Searching for folders matching '*'." },
        { L"-v -v X:\\nothing\\*", "Searching for folders matching 'X:\\nothing\\*'." },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.arguments)));
        const ScratchFolder scratch;
        makeFile(scratch.path / L"a", row.daysOld, 1536);
        const ProgramRun run = runProgram(row.arguments);
        EXPECT_EQ(banner + row.output, run.output);
        EXPECT_EQ(row.exitCode, run.exitCode);
        const bool deletes = row.output.find(all) != std::string::npos;
        EXPECT_EQ(deletes ? Tree() : Tree{ L"a" }, treeOf(scratch.path));
    }
}

TEST(CommandLine, StopsOutsideAnInstallation)
{
    const std::wstring program = L"X:\\apps\\bin\\win64\\lost.exe";
    std::wstring hundred = L"X:\\scratch -kxRoot ";
    for (int i = 0; i < 100; ++i)
        hundred += L"%*d"; // takes two values in three characters
    const std::string zeros = std::string(100, '0') + "\\";
    const struct
    {
        const wchar_t *arguments;
        std::string flag;  // the last value, as the print routine shows it
        std::string flags; // all of them
    } rows[] = {
        { L"X:\\scratch -do abc", "", "" },
        { L"X:\\scratch -kxRoot Y:\\no&#228;", "Y:\\no\xE4\\", "Y:\\no\xE4\\" },
        { L"X:\\scratch -kxroot a/ -KXROOT b", "b\\", "a/b\\" },
        { L"X:\\scratch -kxRoot a%%s%%%*d%s", "a%s%0(null)\\", "a%s%0(null)\\" },
        { L"X:\\scratch -kxRoot %", "\\", "\\" }, // "%\\" is no conversion
        { hundred.c_str(), zeros, zeros },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.flag);
        const ScratchFolder scratch;
        makeFile(scratch.path / L"a", old);
        const ProgramRun run = runProgram(row.arguments, program);
        EXPECT_EQ(banner
                      + "Unable to get KX Root path; This executable was not started from a KX "
                        "directory.\n\n (Tried: 'X:\\apps\\bin\\win64\\lost.exe', '"
                      + row.flag + "')\n\n[-kxRoot flag: " + row.flags
                      + ": invalid]\n[KX_ROOT_INSTALLER: : invalid]\n[appPath: X:\\apps\\: "
                        "invalid]\n[KX_ROOT: : invalid]",
                  run.output);
        EXPECT_EQ(1u, run.exitCode);
        EXPECT_EQ(Tree{ L"a" }, treeOf(scratch.path));
    }
    // What the print routine refuses ends the message, not the program. A placeholder in one text
    // is filled with the next.
    const ScratchFolder scratch;
    const ProgramRun refused = runProgram(L"X:\\scratch -kxRoot a%n", program);
    EXPECT_THAT(refused.output, testing::EndsWith("lost.exe', 'a"));
    EXPECT_EQ(1u, refused.exitCode);
    EXPECT_THAT(runProgram(L"X:\\scratch -kxRoot %3", program).output,
                testing::HasSubstr("lost.exe', '\n[-kxRoot flag: "));
    // The program's name is cut at 250 bytes, within the folder of 43; two folders up from there.
    const std::wstring deep =
        L"X:\\apps\\" + std::wstring(200, L'd') + L"\\" + std::wstring(43, L'e');
    EXPECT_THAT(runProgram(L"X:\\scratch -do 14", deep + L"\\l.exe").output,
                testing::HasSubstr("\n[appPath: X:\\: invalid]"));
}

TEST(Sweep, DeletesOldFilesAndTheFoldersThatThisEmpties)
{
    const ScratchFolder scratch;
    makeFile(scratch.path / L"%s 100%\\%n.txt", old, 511);
    makeFile(scratch.path / L"deep\\er\\new", young);
    makeFile(scratch.path / L"deep\\er\\old", 14.001, 1535);
    makeFile(scratch.path / L"gone\\a\\old", old, 512);
    makeFile(scratch.path / L"hidden", old, 0, FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
    makeFile(scratch.path / L"just young", 13.999);
    makeFile(scratch.path / L"readonly", old, 2000000, FILE_ATTRIBUTE_READONLY);
    makeFile(scratch.path / L"\x00FC\\\x0416\xFEFF", old); // outside Latin-1; a byte order mark
    fs::create_directory(scratch.path / L"void");
    const ProgramRun run = runProgram(L"X:\\scratch\\ -v -v");
    EXPECT_EQ(banner + start("X:\\scratch\\") + progress("X:\\scratch\\")
                  + "  6 files deleted (1 955 Kib). \n\n\n   [X:\\scratch\\]: \n"
                    "     -dir [%s 100%]\n   [X:\\scratch\\%s 100%]: \n     -del %n.txt\n"
                    "     -dir [deep]\n   [X:\\scratch\\deep]: \n     -dir [er]\n"
                    "   [X:\\scratch\\deep\\er]: \n     -ignT new\n     -del old\n"
                    "     -dir [gone]\n   [X:\\scratch\\gone]: \n     -dir [a]\n"
                    "   [X:\\scratch\\gone\\a]: \n     -del old\n     -del hidden\n"
                    "     -ignT just young\n     -del readonly\n     -dir [void]\n"
                    "   [X:\\scratch\\void]: \n     -dir [\xFC]\n   [X:\\scratch\\\xFC]: \n"
                    "     -del ??\n\n\n"
                  + end("X:\\scratch\\"),
              run.output);
    EXPECT_EQ((Tree{ L"deep", L"deep\\er", L"deep\\er\\new", L"just young" }),
              treeOf(scratch.path));
}

TEST(Sweep, ReportsWhatItCannotDeleteAndGoesOn)
{
    const ScratchFolder scratch;
    for (const wchar_t *file : { L"a\\b\\\x0416%s held", L"a\\b\\old", L"old" })
        makeFile(scratch.path / L"\xFC" / file, old);
    const HANDLE held = CreateFileW(L"X:\\scratch\\\xFC\\a\\b\\\x0416%s held", GENERIC_READ, 0,
                                    nullptr, OPEN_EXISTING, 0, nullptr);
    const ProgramRun run = runProgram(L"X:\\scratch\\\xFC* -v -v");
    CloseHandle(held);
    const std::string folder = "X:\\scratch\\\xFC";
    EXPECT_EQ(banner + "Searching for folders matching '" + folder + "*'." + start(folder)
                  + progress(folder) + "  2 files deleted (0 Kib). \n\n\nErrors:\n " + folder
                  + "\\a\\b\\?%s held:Unable to delete file; Error 32: " + systemMessage(32)
                  + "..\n \n\n\n   [" + folder + "]: \n     -dir [a]\n   [" + folder
                  + "\\a]: \n     -dir [b]\n   [" + folder
                  + "\\a\\b]: \n     -del old\n     -del ?%s held\n     -del old\n\n\n"
                  + end(folder),
              run.output);
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_EQ((Tree{ L"\xFC", L"\xFC\\a", L"\xFC\\a\\b", L"\xFC\\a\\b\\\x0416%s held" }),
              treeOf(scratch.path));
}

// A search pattern is its folder, a backslash and "*", and 4 units more with the prefix: a folder
// of 494 units, with a file of 496, is the longest whose entries are seen.
TEST(Sweep, ReachesPathsThatFitAndLeavesLongerOnesAlone)
{
    for (const std::size_t length : { 239u, 240u, 241u, 242u, 243u, 270u, 496u, 497u, 498u }) {
        SCOPED_TRACE(length);
        const ScratchFolder scratch;
        std::string folder = "X:\\scratch\\" + std::string(length > 250 ? 230 : 100, 'm') + "\\";
        folder += std::string(length - folder.size() - 2, 'f');
        const std::wstring wideFolder(folder.begin(), folder.end());
        makeFile(wideFolder + L"\\o", old);
        const bool fits = length <= 496;
        const std::string report =
            fits ? "  1 files deleted (0 Kib). \n\n"
                 : "  0 files deleted (0 Kib). \n\n\nErrors:\n Error deleting folder " + folder
                       + ":Error 145: " + systemMessage(145) + ".\n \n\n";
        EXPECT_EQ(banner + start("X:\\scratch") + progress("X:\\scratch") + report
                      + end("X:\\scratch"),
                  runProgram(L"X:\\scratch -do 14").output);
        EXPECT_EQ(fits, DeleteFileW((wideFolder + L"\\o").c_str()) == 0) << "it was left";
        EXPECT_EQ(fits, RemoveDirectoryW(wideFolder.c_str()) == 0);
    }
}

TEST(Sweep, FollowsALinkToAFolder)
{
    // X:\links\tree\link leads to X:\links\target.
    makeFile(L"X:\\links\\target\\old", old);
    makeFile(L"X:\\links\\target\\new", young);
    const ProgramRun run = runProgram(L"X:\\links\\tree -v -v");
    EXPECT_THAT(run.output, testing::HasSubstr("     -dir [link]\n   [X:\\links\\tree\\link]: \n"
                                               "     -ignT new\n     -del old\n"));
    EXPECT_TRUE(fs::exists(L"X:\\links\\tree\\link"));
    EXPECT_EQ(Tree{ L"new" }, treeOf(L"X:\\links\\target"));
}

TEST(Wildcards, RunEveryMatchingFolder)
{
    // Directory, and the folders below X:\scratch\ that are run, each with the number of its
    // deleted files or a "-" for the warning.
    const char *const rows[][2] = {
        { "X:\\scratch\\M*\\T", "ma\\T 1|Me\\T 1|mi\\T -|" },
        { "X:\\scratch\\m*nothing", "ma 1|Me 1|mi 0|" }, // what is behind the star does not count
        { "X:\\scratch\\m*\\", "ma\\ 1|Me\\ 1|mi\\ 0|" },
        { "X:\\s*\\m*\\T*\\", "ma\\T\\ 1|Me\\T\\ 1|" },
        { "X:/scratch/m*", "" },
        { "X:/scratch/*/T", "ma 1|Me 1|mi 0|x 1|" }, // all in the folder in front of the star
    };
    for (const auto &row : rows) {
        const std::string directory = row[0];
        SCOPED_TRACE(directory);
        const ScratchFolder scratch;
        for (const wchar_t *file : { L"ma\\T\\old", L"Me\\T\\old", L"x\\T\\old", L"m file" })
            makeFile(scratch.path / file, old);
        fs::create_directory(scratch.path / L"mi");

        std::string expected = "Searching for folders matching '" + directory + "'.";
        std::istringstream runs(row[1]);
        const bool isSlashed = directory == "X:/scratch/*/T";
        for (std::string name, deleted; runs >> name && std::getline(runs, deleted, '|');) {
            const std::string folder = (isSlashed ? "X:/scratch/\\" : "X:\\scratch\\") + name;
            const bool isFirst = expected.find("Starting") == std::string::npos;
            if (deleted == " -")
                expected += "Warning: directory " + folder + " does not exist!\n";
            else // the next progress line is due 5 seconds later
                expected += start(folder) + (isFirst ? progress(folder) : "") + " " + deleted
                            + " files deleted (0 Kib). \n\n" + end(folder);
        }
        const std::wstring argument(directory.begin(), directory.end());
        EXPECT_EQ(banner + expected, runProgram(L"-do 14 " + argument).output);
        EXPECT_EQ(*row[1] == '\0', fs::exists(scratch.path / L"Me\\T\\old"));
        EXPECT_TRUE(fs::exists(scratch.path / L"m file") && fs::exists(scratch.path / L"mi"));
        EXPECT_EQ(isSlashed, !fs::exists(scratch.path / L"x\\T\\old"));
    }
}

TEST(Sweep, WorksOnANetworkPath)
{
    makeFile(L"X:\\share\\folder\\sub\\old", old);
    const std::string folder = "\\\\server\\share\\folder";
    EXPECT_EQ(banner + start(folder) + progress(folder) + "  1 files deleted (0 Kib). \n\n"
                  + end(folder),
              runProgram(L"\\\\server\\share\\folder -do 14").output);
    EXPECT_EQ(Tree(), treeOf(L"X:\\share\\folder"));
}

} // namespace
