// What takes too long for every day.
#include "support/files.h"
#include "support/program.h"

#include <gmock/gmock.h>

namespace {

TEST(Stress, ManyFilesInOneFolder)
{
    const ScratchFolder scratch;
    const int files = 100000;
    for (int i = 0; i < files; ++i)
        makeFile(scratch.path / L"full" / std::to_wstring(i), i % 2 == 0 ? old : young, 600);
    const ProgramRun run = runProgram(L"X:\\scratch -do 14");
    EXPECT_EQ(0u, run.exitCode);
    EXPECT_THAT(run.output, testing::HasSubstr("  50000 files deleted (50 000 Kib). \n\n  Done."));
    int left = 0;
    for (const fs::directory_entry &entry : fs::directory_iterator(scratch.path / L"full")) {
        EXPECT_EQ(1, std::stoi(entry.path().filename().wstring()) % 2);
        ++left;
    }
    EXPECT_EQ(files / 2, left);
}

TEST(Stress, ManyFoldersBehindAStar)
{
    const ScratchFolder scratch;
    for (int i = 0; i < 2000; ++i)
        makeFile(scratch.path / (L"f" + std::to_wstring(i)) / L"in\\old", old);
    fs::create_directory(scratch.path / L"g");
    makeFile(scratch.path / L"g\\in\\old", old);
    const ProgramRun run = runProgram(L"X:\\scratch\\f*\\in -do 14");
    EXPECT_EQ(0u, run.exitCode);
    const Tree left = treeOf(scratch.path);
    EXPECT_EQ(4003u, left.size()); // 4,000 folders stay, and all of g
    EXPECT_EQ(1, std::count(left.begin(), left.end(), L"g\\in\\old"));
}

} // namespace
