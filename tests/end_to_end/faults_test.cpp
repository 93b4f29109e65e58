// Faults, caused for real while the program runs, and what is left of the tree each time.
#include "swept_folder.h"

#include <atomic>
#include <cstdlib>
#include <random>
#include <set>
#include <thread>

namespace {

using Clock = fs::file_time_type::clock;

HANDLE holdOpen(const fs::path &path)
{
    return CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                       FILE_FLAG_BACKUP_SEMANTICS, nullptr);
}

std::wstring numbered(const wchar_t *name, int number)
{
    return name + std::to_wstring(1000 + number);
}

/// Starts the program on 500 old files, "old1000" to "old1499", that are deleted in this order, and
/// stops it in their midst; again, should it have been too fast.
RunningProgram startAndSuspend()
{
    const fs::path first = swept / L"full\\old1000";
    const fs::path late = swept / L"full\\old1400";
    for (int tries = 1;; ++tries) {
        for (int i = 0; i < 500; ++i)
            makeFile(swept / L"full" / numbered(L"old", i), old);
        const RunningProgram running = startProgram(command);
        while (fs::exists(first)
               && WaitForSingleObject(running.process.hProcess, 0) == WAIT_TIMEOUT)
            SwitchToThread();
        SuspendThread(running.process.hThread);
        EXPECT_FALSE(fs::exists(first));
        if (fs::exists(first) || fs::exists(late) || tries == 20)
            return running;
        ResumeThread(running.process.hThread);
        waitFor(running);
    }
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
    const RunningProgram running = startAndSuspend();
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
    const RunningProgram running = startAndSuspend();
    TerminateProcess(running.process.hProcess, 9);
    EXPECT_EQ(9u, waitFor(running).exitCode);
    EXPECT_TRUE(fs::exists(swept / L"full\\young") && fs::exists(swept / L"full\\old1499"));
    const ProgramRun run = runProgram(command);
    EXPECT_EQ("", errorsOf(run));
    faults.expectLeft({ L"full", L"full\\young" });
}

TEST(Fault, FileThatVanishesOrGetsYoungAfterItWasListed)
{
    const Faults faults;
    const RunningProgram running = startAndSuspend();
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
    for (int folder = 0; folder < 10; ++folder) {
        left.push_back(numbered(L"z", folder));
        makeFile(swept / left.back() / L"old", old);
        left.push_back(left.back() + L"\\young");
        makeFile(swept / left.back(), young);
    }
    const RunningProgram one = startAndSuspend();
    const RunningProgram other = startProgram(command);
    ResumeThread(one.process.hThread);
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
            fs::last_write_time(
                entry, Clock::now() - std::chrono::hours(24 * (below8() < 4 ? 30 : 1)), ignored);
            break;
        }
    }
}

TEST(Fault, TreeThatChangesWhileItIsSwept)
{
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

// X:\ram\model has files of the first minutes and the second day of 1601.
TEST(Fault, TimesOf1601)
{
    const fs::path root = L"X:\\ram";
    makeFile(root / L"canary", old);
    makeFile(root / L"tree\\young", young);
    for (const wchar_t *name : { L"five minutes", L"one day" }) {
        const fs::path copy = root / L"tree" / name; // with the times of the original
        EXPECT_TRUE(CopyFileW((root / L"model" / name).c_str(), copy.c_str(), FALSE));
        WIN32_FILE_ATTRIBUTE_DATA data;
        EXPECT_TRUE(GetFileAttributesExW(copy.c_str(), GetFileExInfoStandard, &data));
        EXPECT_LT(data.ftLastWriteTime.dwHighDateTime, 300u); // it was not moved to 1901
    }
    EXPECT_THAT(runProgram(L"X:\\ram\\tree -do 14").output,
                testing::HasSubstr("\n  2 files deleted"));
    EXPECT_EQ(Tree{ L"young" }, treeOf(root / L"tree"));
    EXPECT_TRUE(fs::exists(root / L"canary"));
}

} // namespace
