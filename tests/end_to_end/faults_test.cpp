// Faults, caused for real while the program runs, and names, paths and links of unusual shape; and
// what is left of the tree each time.
#include "support/files.h"
#include "support/program.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

#include <atomic>
#include <cstdlib>
#include <random>
#include <thread>

namespace {

using testing::HasSubstr;

const fs::path swept = L"X:\\faults\\swept\\tree";
const std::wstring command = L"-do 14 X:\\faults\\s*\\tree";

/// The folder to sweep, with these files and a link in it to X:\faults\behind; and canaries around
/// it, old ones where no rule reaches and a young one behind the link.
struct Faults
{
    explicit Faults(const std::wstring &tree = L"")
    {
        clear();
        makeFiles(L"X:\\faults",
                  L"canary|swept\\canary|swept\\young|other\\tree\\canary|behind\\young canary");
        canaries = treeOf(L"X:\\faults");
        makeFiles(swept, tree);
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

    /// All canaries, and this tree in the swept folder.
    void expectLeft(const std::wstring &tree) const
    {
        std::wstring left = L"|" + treeOf(swept) + L"|";
        const std::wstring link = L"|link|link\\young canary|";
        const std::size_t at = left.find(link);
        ASSERT_NE(std::wstring::npos, at);
        left.replace(at, link.size(), L"|");
        EXPECT_EQ((tree.empty() ? L"" : L"|") + tree + L"|", left);
        clear();
        EXPECT_EQ(canaries, treeOf(L"X:\\faults"));
    }

    std::wstring canaries;
};

/// What a report says under "Errors:".
std::string errorsOf(const ProgramRun &run)
{
    const std::size_t head = run.output.find("\nErrors:\n ");
    if (head == std::string::npos)
        return "";
    return run.output.substr(head + 10, run.output.find(" \n\n", head) - head - 10);
}

std::string cannotDelete(const std::string &file)
{
    return "X:\\faults\\swept\\tree\\" + file + ":Unable to delete file; " + systemError(32)
           + "..\n";
}

std::string cannotRemove(const std::string &folder, DWORD code)
{
    return "Error deleting folder " + folder + ":" + systemError(code) + ".\n";
}

TEST(Fault, HeldOpenWithoutSharing)
{
    // What is held, how many files are deleted, what is left. A held folder is not even listed.
    for (const QStringList &row :
         rowsOf(3, R"(first -> 5 first   z -> 5 z   m\in\held -> 5 m|m\in|m\in\held
                   m\in -> 3 m|m\in|m\in\held|m\in\next|m\in\prev)")) {
        SCOPED_TRACE(row[0].toStdString());
        const Faults faults(L"first|m\\in\\held|m\\in\\next|m\\in\\prev|n\\old|z");
        const HANDLE held = holdOpen(swept / row[0].toStdWString());
        const ProgramRun run = runProgram(command);
        CloseHandle(held);
        EXPECT_EQ(row[1] == q("5") ? cannotDelete(row[0].toStdString())
                                   : cannotRemove("X:\\faults\\swept\\tree\\m\\in", 32),
                  errorsOf(run));
        EXPECT_THAT(run.output, HasSubstr("\n  " + row[1].toStdString() + " files deleted"));
        EXPECT_EQ(0u, run.exitCode);
        faults.expectLeft(row[2].toStdWString());
    }
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
    for (int tries = 1;; ++tries) {
        for (int i = 0; i < 500; ++i)
            makeFile(swept / L"full" / numbered(L"old", i));
        const RunningProgram running = startProgram(command);
        while (fs::exists(first)
               && WaitForSingleObject(running.process.hProcess, 0) == WAIT_TIMEOUT)
            SwitchToThread();
        SuspendThread(running.process.hThread);
        EXPECT_FALSE(fs::exists(first));
        if (fs::exists(first) || fs::exists(swept / L"full\\old1400") || tries == 20)
            return running;
        ResumeThread(running.process.hThread);
        waitFor(running);
    }
}

TEST(Fault, InTheMiddleOfARun)
{
    enum { refill, vanishOrGetYoung, end, anotherSweep };
    for (const int fault : { refill, vanishOrGetYoung, end, anotherSweep }) {
        SCOPED_TRACE(fault);
        const Faults faults(L"z1\\old|z1\\young|z2\\in\\old");
        const RunningProgram running = startAndSuspend();
        RunningProgram other = {};
        if (fault == refill) { // before the folder is removed
            makeFile(swept / L"full\\another");
        } else if (fault == vanishOrGetYoung) { // after they were listed, which is what decides
            DeleteFileW((swept / L"full\\old1499").c_str());
            makeFile(swept / L"full\\old1498", young);
        } else if (fault == end) {
            TerminateProcess(running.process.hProcess, 9);
        } else {
            other = startProgram(command); // it takes files that the first one will miss
            while (fs::exists(swept / L"full\\old1400")
                   && WaitForSingleObject(other.process.hProcess, 0) == WAIT_TIMEOUT)
                SwitchToThread();
        }
        ResumeThread(running.process.hThread);
        ProgramRun run = waitFor(running);
        EXPECT_EQ(fault == end ? 9u : 0u, run.exitCode);
        EXPECT_TRUE(fault != end || fs::exists(swept / L"full\\old1499"));
        // Where one sweep removes a folder that the other then fails on, the folder above stays
        // until the next run.
        EXPECT_TRUE(fault != anotherSweep || waitFor(other).exitCode == 0);
        if (fault >= end)
            run = runProgram(command);
        if (fault == vanishOrGetYoung) { // what vanished counts; the two by z may have gone before
            EXPECT_THAT(run.output,
                        testing::AnyOf(HasSubstr("\n  502 files"), HasSubstr("\n  500 files")));
        }
        EXPECT_EQ(fault == refill ? cannotRemove("X:\\faults\\swept\\tree\\full", 145) : "",
                  errorsOf(run));
        faults.expectLeft(fault == refill ? L"full|full\\another|z1|z1\\young" : L"z1|z1\\young");
    }
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
    DWORD written = 0;
    EXPECT_FALSE(WriteFile(fullDisk, "x", 1, &written, nullptr));
    EXPECT_EQ(static_cast<DWORD>(ERROR_DISK_FULL), GetLastError());
    for (const HANDLE output : { INVALID_HANDLE_VALUE, brokenPipe, fullDisk }) {
        const Faults faults(L"a\\old|b\\young");
        EXPECT_EQ(0u, waitFor(startProgram(command + L" -v", installedProgram, output)).exitCode);
        faults.expectLeft(L"b|b\\young");
    }
}

void removeEntry(const fs::path &entry)
{
    RemoveDirectoryW((entry / L"in").c_str());
    RemoveDirectoryW(entry.c_str());
    DeleteFileW(entry.c_str());
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
        const fs::path other = folder / numbered(L"e", below8());
        switch (below8()) {
        case 0:
            removeEntry(entry);
            break;
        case 1:
            MoveFileExW(entry.c_str(), other.c_str(), MOVEFILE_REPLACE_EXISTING);
            break;
        case 2:
            CreateDirectoryW(entry.c_str(), nullptr);
            CreateDirectoryW((entry / L"in").c_str(), nullptr);
            break;
        default:
            CreateDirectoryW(folder.c_str(), nullptr);
            CopyFileW((swept.parent_path() / (below8() < 4 ? L"canary" : L"young")).c_str(),
                      entry.c_str(), FALSE);
            break;
        }
    }
}

TEST(Fault, TreeThatChangesWhileItIsSwept)
{
    const Faults faults(L"f1000\\young|f1003\\young|f1007\\young");
    const char *seconds = std::getenv("KX_RACE_SECONDS"); // NOLINT: one thread yet
    const ULONGLONG end = GetTickCount64() + (seconds != nullptr ? std::stoull(seconds) : 2) * 1000;
    std::atomic<bool> stop = false;
    std::thread racer([&stop] { race(stop); });
    while (GetTickCount64() < end) {
        const ProgramRun run = runProgram(command);
        EXPECT_EQ(0u, run.exitCode);
        EXPECT_THAT(run.output, testing::EndsWith("swept\\tree is # MiB\n\n"));
    }
    stop = true;
    racer.join();
    for (int i = 0; i < 64; ++i)
        removeEntry(swept / numbered(L"f", i / 8) / numbered(L"e", i % 8));
    EXPECT_EQ("", errorsOf(runProgram(command)));
    faults.expectLeft(L"f1000|f1000\\young|f1003|f1003\\young|f1007|f1007\\young");
}

// X:\ram\model has a file of each of these times: the first minutes and the second day of 1601,
// 1902, a second before 1970, 1970, both sides of 2^31 seconds, 2400.
TEST(Fault, TimesFarAway)
{
    for (const QStringList &row : rowsOf(2, R"(
            14 2038-01-19~031407|2038-01-19~031408|2400-01-01|young
            24855 1969-12-31~235959|1970-01-01|2038-01-19~031407|2038-01-19~031408|2400-01-01|young)")) {
        SCOPED_TRACE(row[0].toStdString());
        makeFiles(L"X:\\ram", L"canary|tree\\young");
        for (const fs::directory_entry &file : fs::directory_iterator(L"X:\\ram\\model"))
            EXPECT_TRUE(CopyFileW(file.path().c_str(),
                                  (L"X:\\ram\\tree" / file.path().filename()).c_str(), FALSE));
        runProgram(L"X:\\ram\\tree -do " + row[0].toStdWString());
        EXPECT_EQ(row[1].toStdWString(), treeOf(L"X:\\ram\\tree"));
        EXPECT_TRUE(fs::exists(L"X:\\ram\\canary"));
    }
}

std::wstring verbatim(const fs::path &path) { return L"\\\\?\\" + path.wstring(); }

/// Makes a file by its very name, which the platform otherwise changes, and the folder around it.
void makeVerbatim(const fs::path &path)
{
    makeFile(L"X:\\faults\\made");
    CreateDirectoryW(verbatim(path.parent_path()).c_str(), nullptr);
    EXPECT_TRUE(MoveFileW(L"X:\\faults\\made", verbatim(path).c_str()));
}

/// Deletes it and the folder around it; whether it was still there.
bool deleteVerbatim(const fs::path &path)
{
    const bool wasThere = DeleteFileW(verbatim(path).c_str()) != 0;
    RemoveDirectoryW(verbatim(path.parent_path()).c_str());
    return wasThere;
}

// Entries are seen while the search pattern, their folder with "\*", has at most 500 units, of
// which the prefix takes 4, on the network 6; it is put in front above 240, and of a path to act on
// from 240 on. Behind it a doubled backslash is an error, and a full stop at the end of a name is
// kept; else the platform drops it.
TEST(Shape, PathsByTheirLength)
{
    // Folder that is swept, length of the file's path, its end, number of deleted files in the
    // report, whether the file is left.
    for (const QStringList &row : rowsOf(5, R"(
            X:\scratch\ 239 \o 1 gone     X:\scratch\ 240 \o 1 gone      X:\scratch\ 241 \o 1 gone
            X:\scratch\ 496 \o 1 gone     X:\scratch\ 497 \o 0 left      X:\scratch\ 499 \o 0 left      X:\scratch\\ 240 \o 1 left
            X:\scratch\\ 241 \o 0 left    X:\scratch\ 239 . 1 left       X:\scratch\ 240 . 1 gone
            X:\scratch\ 241 .\o 0 left    X:\scratch\ 242 .\o 1 gone     \\server\share\ 99 \o 1 gone
            \\server\share\ 494 \o 1 gone \\server\share\ 495 \o 0 left)")) {
        SCOPED_TRACE((row[0] + row[1] + row[2]).toStdString());
        const ScratchFolder scratch;
        const fs::path root = row[0].startsWith(q("X:")) ? L"X:\\scratch" : L"X:\\share";
        const int length = row[1].toInt();
        const QString above = repeated(length > 250 ? 230 : 50, 'm');
        const int rest = length - (row[0] + above + q("\\") + row[2]).size();
        const fs::path file =
            root / (above + q("\\") + repeated(rest, 'f') + row[2]).toStdWString();
        fs::create_directories(root / above.toStdWString());
        makeVerbatim(file);
        const ProgramRun run = runProgram(L"-do 14 " + row[0].toStdWString());
        EXPECT_THAT(run.output, HasSubstr("\n  " + row[3].toStdString() + " files deleted"));
        EXPECT_EQ(row[4], q(deleteVerbatim(file) ? "left" : "gone"));
        EXPECT_TRUE(row[4] == q("gone") || errorsOf(run).find("Error deleting folder ") == 0);
        fs::remove(root / above.toStdWString());
    }
}

// What has the name that the platform makes of another one, in the same folder, goes in its place.
TEST(Shape, NamesThatStandForTheirNeighbours)
{
    const std::wstring f(234, L'f');
    const fs::path deep = swept / f / f;
    const Faults faults(L"b\\young|d\\x");
    makeVerbatim(swept / L"a\\blank "); // taken for vanished
    makeVerbatim(swept / L"b\\young."); // stands for its neighbour
    makeFile(deep / L"young", young);   // 496 units; with the prefix a path is cut there
    makeFile(deep / L"young is cut off");
    makeFile(deep / L"other is cut off"); // taken for vanished
    const ProgramRun run = runProgram(command);
    EXPECT_THAT(run.output, HasSubstr("\n  5 files deleted"));
    EXPECT_EQ(cannotRemove("X:\\faults\\swept\\tree\\a", 145), errorsOf(run));
    EXPECT_FALSE(fs::exists(swept / L"b\\young") || DeleteFileW((deep / L"young").c_str()));
    EXPECT_TRUE(deleteVerbatim(swept / L"a\\blank ") && deleteVerbatim(swept / L"b\\young."));
    EXPECT_TRUE(DeleteFileW((deep / L"other is cut off").c_str()));
    EXPECT_TRUE(deleteVerbatim(deep / L"young is cut off"));
    faults.expectLeft(f);
}

// One level up from the swept folder is an old canary. X:\odd\sub has old files named "a?b" and
// "a\x01b", X:\odd a folder named "s*r".
TEST(Shape, UnusualNames)
{
    const std::wstring names = L"n\\%s%n%|n\\  x|n\\\xFFFF|n\\a;b|n\\\xFE0F\x200B|n\\";
    const Faults faults(names + std::wstring(255, L'n') + L"|in\\young");
    const wchar_t *const folders[] = { L"...", L"....", L".. ", L". ", L" ", L".. ." };
    for (const wchar_t *folder : folders)
        makeVerbatim(swept / folder / L"maybe"); // reached or not, as the platform has it
    EXPECT_EQ(0u, runProgram(command).exitCode);
    for (const wchar_t *folder : folders)
        deleteVerbatim(swept / folder / L"maybe");
    faults.expectLeft(L"in|in\\young");

    const ProgramRun run = runProgram(L"X:\\odd -do 14");
    EXPECT_THAT(run.output, HasSubstr("\n  2 files deleted"));
    EXPECT_EQ(cannotRemove("X:\\odd\\sub", 145), errorsOf(run));
    const std::string searched = runProgram(L"X:\\odd\\s* -do 14").output;
    EXPECT_THAT(searched, HasSubstr("\nStarting to delete files in folder 'X:\\odd\\sub'"));
    EXPECT_EQ(searched.find("\nStarting"), searched.rfind("\nStarting")) << "sub alone was run";
}

// Below X:\links, "tree\link" leads to "target", "files\to old" to "old", "files\to young" to
// "young" and "cycle\sub\up" to "cycle", where the paths end some time.
TEST(Shape, LinksAreFollowed)
{
    makeFiles(L"X:\\links", L"canary|target\\old|target\\young|old|young|cycle\\old|"
                            L"cycle\\sub\\old|cycle\\sub\\young");
    const std::pair<const wchar_t *, const char *> rows[] = {
        { L"tree", "     -dir [link]\n   [X:\\links\\tree\\link]: \n     -del old\n     -ignT yo" },
        { L"files", "     -del to old\n     -ignT to young\n" },
        { L"cycle", "\n  2 files deleted" },
    };
    for (const auto &[folder, said] : rows) {
        const ProgramRun run = runProgram(L"-v -v X:\\links\\" + std::wstring(folder));
        EXPECT_THAT(run.output, HasSubstr(said));
        EXPECT_EQ("", errorsOf(run));
    }
    EXPECT_EQ(L"young", treeOf(L"X:\\links\\target"));
    EXPECT_TRUE(fs::exists(L"X:\\links\\tree\\link") && fs::exists(L"X:\\links\\canary"));
    EXPECT_TRUE(fs::exists(L"X:\\links\\young") && !fs::exists(L"X:\\links\\files\\to old"));
    EXPECT_TRUE(fs::exists(L"X:\\links\\cycle\\sub\\young"));
}

} // namespace
