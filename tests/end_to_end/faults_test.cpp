// Faults, caused for real while the program runs, and what is left of the tree each time.
#include "support/files.h"
#include "support/program.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

namespace {

const fs::path swept = L"X:\\faults\\swept\\tree";
const std::wstring command = L"-do 14 X:\\faults\\s*\\tree";
const std::string sweptText = "X:\\faults\\swept\\tree";

/// The folder to sweep, with a link in it to X:\faults\behind; and canaries around it, old ones
/// where no rule reaches and a young one behind the link.
struct Faults
{
    Faults()
    {
        clear();
        for (const wchar_t *canary : { L"canary", L"swept\\canary", L"other\\tree\\canary" })
            makeFile(root / canary, old);
        makeFile(root / L"behind\\canary", young);
        canaries = treeOf(root);
    }
    ~Faults() { clear(); }
    Faults(const Faults &) = delete;
    Faults &operator=(const Faults &) = delete;

    static void clear()
    {
        std::error_code ignored;
        for (const fs::directory_entry &entry : fs::directory_iterator(swept, ignored))
            if (entry.path().filename() != L"link") // what is behind it would go too
                fs::remove_all(entry.path(), ignored);
    }

    void expectLeft(const Tree &left) const
    {
        Tree expected = canaries;
        for (const std::wstring &path : left)
            expected.push_back(L"swept\\tree\\" + path);
        std::sort(expected.begin(), expected.end());
        EXPECT_EQ(expected, treeOf(root));
    }

    const fs::path root = L"X:\\faults";
    Tree canaries;
};

HANDLE holdOpen(const fs::path &path)
{
    return CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

std::string errorsOf(const ProgramRun &run)
{
    const std::size_t from = run.output.find("\nErrors:\n ");
    return from == std::string::npos
               ? ""
               : run.output.substr(from + 10, run.output.find(" \n\n", from) - from - 10);
}

std::wstring numbered(const wchar_t *name, int number)
{
    return name + std::to_wstring(1000 + number);
}

/// Starts the program on a folder of old files "old1000" ... that are deleted in this order, and
/// stops it in their midst.
RunningProgram startAndSuspend(int files)
{
    for (int i = 0; i < files; ++i)
        makeFile(swept / L"full" / numbered(L"old", i), old);
    const RunningProgram running = startProgram(command);
    while (fs::exists(swept / L"full\\old1000")
           && WaitForSingleObject(running.process.hProcess, 0) == WAIT_TIMEOUT)
        SwitchToThread();
    SuspendThread(running.process.hThread);
    EXPECT_FALSE(fs::exists(swept / L"full\\old1000"));
    EXPECT_TRUE(fs::exists(swept / L"full" / numbered(L"old", files - 1)));
    return running;
}

TEST(Fault, HeldOpenWithoutSharing)
{
    const std::string cannotDelete =
        ":Unable to delete file; Error 32: " + systemMessage(32) + "..\n";
    const std::string cannotRemove = ":Error 32: " + systemMessage(32) + ".\n";
    const struct
    {
        const wchar_t *held;
        std::string error;
        int deleted;
        Tree left;
    } rows[] = {
        { L"first", sweptText + "\\first" + cannotDelete, 5, { L"first" } },
        { L"z last", sweptText + "\\z last" + cannotDelete, 5, { L"z last" } },
        { L"m\\in\\held",
          sweptText + "\\m\\in\\held" + cannotDelete,
          5,
          { L"m", L"m\\in", L"m\\in\\held" } },
        { L"m\\in",
          "Error deleting folder " + sweptText + "\\m\\in" + cannotRemove,
          3,
          { L"m", L"m\\in", L"m\\in\\held", L"m\\in\\next", L"m\\in\\prev" } }, // not even listed
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.error);
        const Faults faults;
        for (const wchar_t *file :
             { L"first", L"m\\in\\held", L"m\\in\\next", L"m\\in\\prev", L"n\\old", L"z last" })
            makeFile(swept / file, old);
        const HANDLE held = holdOpen(swept / row.held);
        const ProgramRun run = runProgram(command);
        CloseHandle(held);
        EXPECT_EQ(row.error, errorsOf(run));
        EXPECT_THAT(run.output,
                    testing::HasSubstr("\n  " + std::to_string(row.deleted) + " files deleted"));
        EXPECT_EQ(0u, run.exitCode);
        faults.expectLeft(row.left);
    }
}

TEST(Fault, FolderFilledAgainBeforeItsRemoval)
{
    const Faults faults;
    const RunningProgram running = startAndSuspend(500);
    makeFile(swept / L"full\\another", old);
    ResumeThread(running.process.hThread);
    const ProgramRun run = waitFor(running);
    EXPECT_EQ("Error deleting folder " + sweptText + "\\full:Error 145: " + systemMessage(145)
                  + ".\n",
              errorsOf(run));
    EXPECT_EQ(0u, run.exitCode);
    faults.expectLeft({ L"full", L"full\\another" });
}

TEST(Fault, EndedInTheMiddleAndStartedAgain)
{
    const Faults faults;
    makeFile(swept / L"full\\young", young);
    const RunningProgram running = startAndSuspend(500);
    TerminateProcess(running.process.hProcess, 9);
    EXPECT_EQ(9u, waitFor(running).exitCode);
    EXPECT_TRUE(fs::exists(swept / L"full\\young"));
    const ProgramRun run = runProgram(command);
    EXPECT_EQ("", errorsOf(run));
    faults.expectLeft({ L"full", L"full\\young" });
}

TEST(Fault, FileThatVanishesOrGetsYoungAfterItWasListed)
{
    const Faults faults;
    const RunningProgram running = startAndSuspend(500);
    DeleteFileW((swept / L"full\\old1499").c_str());
    makeFile(swept / L"full\\old1498", young); // what was listed decides
    ResumeThread(running.process.hThread);
    const ProgramRun run = waitFor(running);
    EXPECT_THAT(run.output, testing::HasSubstr("\n  500 files deleted"));
    EXPECT_EQ("", errorsOf(run));
    faults.expectLeft({});
}

TEST(Fault, NowhereToPrint)
{
    HANDLE unread = nullptr;
    HANDLE brokenPipe = nullptr;
    CreatePipe(&unread, &brokenPipe, nullptr, 0);
    CloseHandle(unread);
    const HANDLE fullDisk =
        CreateFileW(L"X:\\full disk", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(INVALID_HANDLE_VALUE, fullDisk);
    DWORD written = 0;
    EXPECT_FALSE(WriteFile(fullDisk, "x", 1, &written, nullptr));
    EXPECT_EQ(static_cast<DWORD>(ERROR_DISK_FULL), GetLastError());
    for (const HANDLE output : { INVALID_HANDLE_VALUE, brokenPipe, fullDisk }) {
        const Faults faults;
        makeFile(swept / L"a\\old", old);
        makeFile(swept / L"b\\young", young);
        EXPECT_EQ(0u, waitFor(startProgram(command + L" -v", installedProgram, output)).exitCode);
        faults.expectLeft({ L"b", L"b\\young" });
    }
}

TEST(Fault, TwoSweepsOfOneTreeAtOnce)
{
    const Faults faults;
    Tree left;
    for (int folder = 0; folder < 20; ++folder) {
        for (int file = 0; file < 20; ++file)
            makeFile(swept / numbered(L"f", folder) / numbered(L"old", file), old);
        if (folder % 2 == 0)
            continue;
        left.push_back(numbered(L"f", folder));
        left.push_back(left.back() + L"\\young");
        makeFile(swept / left.back(), young);
    }
    const RunningProgram one = startProgram(command);
    const RunningProgram other = startProgram(command);
    EXPECT_EQ(0u, waitFor(one).exitCode);
    EXPECT_EQ(0u, waitFor(other).exitCode);
    // Where each removed a folder that the other one then failed on, the folder above stays until
    // the next run.
    EXPECT_EQ("", errorsOf(runProgram(command)));
    faults.expectLeft(left);
}

/// Makes, deletes, renames and replaces files and folders until it is told to stop. With plain
/// calls that fail at once: the C++ library's own tries again and again.
void race(const std::atomic<bool> &stop)
{
    std::minstd_rand random(1); // NOLINT: the same each time
    const auto below8 = [&random] { return static_cast<int>(random() % 8); };
    while (!stop) {
        const fs::path folder = swept / numbered(L"f", below8());
        const fs::path entry = folder / numbered(L"e", below8());
        CreateDirectoryW(folder.c_str(), nullptr);
        switch (below8()) {
        case 0:
            RemoveDirectoryW((entry / L"in").c_str());
            RemoveDirectoryW(entry.c_str());
            DeleteFileW(entry.c_str());
            break;
        case 1:
            MoveFileExW(entry.c_str(), (folder / numbered(L"e", below8())).c_str(),
                        MOVEFILE_REPLACE_EXISTING);
            break;
        case 2:
            CreateDirectoryW(entry.c_str(), nullptr);
            CreateDirectoryW((entry / L"in").c_str(), nullptr);
            break;
        default:
            if (std::FILE *file = _wfopen(entry.c_str(), L"wb"))
                std::fclose(file);
            std::error_code ignored;
            fs::last_write_time(entry,
                                fs::file_time_type::clock::now()
                                    - std::chrono::hours(24 * (below8() < 4 ? 30 : 1)),
                                ignored);
            break;
        }
    }
}

TEST(Fault, TreeThatChangesWhileItIsSwept)
{
    using Clock = fs::file_time_type::clock;
    const Faults faults;
    std::set<fs::path> left;
    for (int number = 0; number < 8; ++number)
        left.insert(numbered(L"f", number) + L"\\untouched");
    for (const fs::path &file : left)
        makeFile(swept / file, young);
    const char *seconds = std::getenv("KX_RACE_SECONDS"); // NOLINT: one thread yet
    const auto end =
        Clock::now() + std::chrono::seconds(seconds != nullptr ? std::atoi(seconds) : 2);
    std::atomic<bool> stop = false;
    std::thread racer([&stop] { race(stop); });
    while (Clock::now() < end) {
        const ProgramRun run = runProgram(command);
        EXPECT_EQ(0u, run.exitCode);
        EXPECT_THAT(run.output, testing::EndsWith("  Done. Free drive space in " + sweptText
                                                  + " is # MiB\n\n"));
    }
    stop = true;
    racer.join();

    for (const fs::path path : treeOf(swept))
        if (fs::is_regular_file(swept / path) && *path.begin() != L"link"
            && fs::last_write_time(swept / path) > Clock::now() - std::chrono::hours(24 * 14))
            left.insert(path);
    for (const fs::path &path : std::set<fs::path>(left))
        for (fs::path folder = path.parent_path(); !folder.empty(); folder = folder.parent_path())
            left.insert(folder);
    EXPECT_EQ("", errorsOf(runProgram(command)));
    faults.expectLeft(Tree(left.begin(), left.end()));
}

TEST(Fault, TimesFarAway)
{
    // Last-write times in seconds since 1970.
    const struct
    {
        const wchar_t *name;
        long long time;
    } files[] = { { L"1902", -2145916800 },  { L"1969", -1 },           { L"1970", 0 },
                  { L"2038 a", 2147483647 }, { L"2038 b", 2147483648 }, { L"2400", 13569465600 } };
    const struct
    {
        const char *days;
        Tree left;
    } rows[] = {
        { "14", { L"2038 a", L"2038 b", L"2400" } },
        { "24855", { L"1969", L"1970", L"2038 a", L"2038 b", L"2400" } }, // 68 years
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.days);
        const Faults faults;
        for (const auto &file : files) {
            makeFile(swept / file.name, 0);
            const HANDLE handle = CreateFileW((swept / file.name).c_str(), FILE_WRITE_ATTRIBUTES, 0,
                                              nullptr, OPEN_EXISTING, 0, nullptr);
            ULARGE_INTEGER ticks;
            ticks.QuadPart = static_cast<ULONGLONG>((file.time + 11644473600) * 10000000);
            const FILETIME time = { ticks.LowPart, ticks.HighPart };
            EXPECT_TRUE(SetFileTime(handle, nullptr, nullptr, &time));
            CloseHandle(handle);
        }
        const std::string days = row.days;
        runProgram(L"X:\\faults\\s*\\tree -do " + std::wstring(days.begin(), days.end()));
        faults.expectLeft(row.left);
    }
}

std::wstring verbatim(const fs::path &path) { return L"\\\\?\\" + path.wstring(); }

/// Makes a file by its very name, which the platform otherwise changes.
void makeVerbatim(const fs::path &path, double daysOld)
{
    const fs::path plain = swept / L"made";
    makeFile(plain, daysOld);
    EXPECT_TRUE(MoveFileW(plain.c_str(), verbatim(path).c_str()));
}

// Below 240 units the platform gets a path as it is and drops full stops and blanks at the end of a
// name, so what is acted on is the name without them; from there on it is the very name.
TEST(Shape, NamesThatEndInAFullStopOrABlank)
{
    const Faults faults;
    const fs::path deep = swept / std::wstring(220, L'd');
    for (const fs::path &folder : { swept / L"a", swept / L"b", deep })
        fs::create_directory(folder);
    makeVerbatim(swept / L"a\\blank ", old); // taken for vanished
    makeVerbatim(swept / L"b\\stop.", old);  // stands for its neighbour
    makeFile(swept / L"b\\stop", young);
    makeVerbatim(deep / L"stop.", old);
    makeFile(deep / L"stop", young);
    const ProgramRun run = runProgram(command);
    EXPECT_THAT(run.output, testing::HasSubstr("\n  3 files deleted"));
    EXPECT_EQ("Error deleting folder " + sweptText + "\\a:Error 145: " + systemMessage(145) + ".\n",
              errorsOf(run));
    faults.expectLeft(
        { L"a", L"a\\blank ", L"b", L"b\\stop.", deep.filename(), deep.filename() / L"stop" });
    DeleteFileW(verbatim(swept / L"a\\blank ").c_str());
    DeleteFileW(verbatim(swept / L"b\\stop.").c_str());
}

TEST(Shape, FoldersOfFullStopsAndBlanksLeadNowhereElse)
{
    for (const wchar_t *name : { L"...", L"....", L".. ", L". ", L" ", L".. ." }) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        const Faults faults;
        makeFile(swept / L"in\\young", young);
        const std::wstring folder = verbatim(swept / L"in" / name);
        CreateDirectoryW(folder.c_str(), nullptr);
        makeVerbatim(swept / L"in" / name / L"young", young);
        EXPECT_EQ(0u, runProgram(command).exitCode);
        EXPECT_TRUE(DeleteFileW((folder + L"\\young").c_str()));
        EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
        faults.expectLeft({ L"in", L"in\\young" });
    }
}

// With the prefix a path is cut behind 496 units. What is then acted on is in the same folder,
// since entries are seen only up to folders of 494.
TEST(Shape, PathsBeyondTheCut)
{
    const Faults faults;
    const fs::path folder = swept / std::wstring(234, L'f') / std::wstring(234, L'f');
    makeFile(folder / L"fifth", young);          // 496 units
    makeFile(folder / L"fifth is cut off", old); // stands for its neighbour
    makeFile(folder / L"other is cut off", old); // taken for vanished
    const ProgramRun run = runProgram(command);
    EXPECT_THAT(run.output, testing::HasSubstr("\n  2 files deleted"));
    EXPECT_EQ("", errorsOf(run));
    EXPECT_FALSE(DeleteFileW((folder / L"fifth").c_str()));
    EXPECT_TRUE(DeleteFileW((folder / L"fifth is cut off").c_str()));
    EXPECT_TRUE(DeleteFileW((folder / L"other is cut off").c_str()));
    EXPECT_TRUE(RemoveDirectoryW(folder.c_str()));
    faults.expectLeft({ folder.parent_path().filename() });
}

TEST(Shape, UnusualNames)
{
    const Faults faults;
    const std::wstring longest(255, L'n');
    for (const wchar_t *name :
         { L"%s%n%", L"  x", L"\xFFFF", L"a;b", L"\xFE0F\x200B", longest.c_str() })
        makeFile(swept / L"names" / name, old);
    const ProgramRun run = runProgram(command);
    EXPECT_THAT(run.output, testing::HasSubstr("\n  6 files deleted"));
    faults.expectLeft({});
}

TEST(Shape, LinkToAParentEndsWherePathsDo)
{
    // X:\links\cycle\sub\up leads to X:\links\cycle.
    makeFile(L"X:\\links\\canary", old);
    makeFile(L"X:\\links\\cycle\\old", old);
    makeFile(L"X:\\links\\cycle\\sub\\old", old);
    makeFile(L"X:\\links\\cycle\\sub\\young", young);
    const ProgramRun run = runProgram(L"X:\\links\\cycle -do 14");
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_THAT(run.output, testing::HasSubstr("\n  2 files deleted"));
    EXPECT_EQ("", errorsOf(run));
    EXPECT_TRUE(fs::exists(L"X:\\links\\canary") && fs::exists(L"X:\\links\\cycle\\sub\\young"));
}

} // namespace
