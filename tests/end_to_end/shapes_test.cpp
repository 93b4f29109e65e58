// Names, paths and links of unusual shape, and what is acted on then.
#include "swept_folder.h"

namespace {

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

// One level up from the swept folder is an old canary.
TEST(Shape, FoldersOfFullStopsAndBlanksLeadNowhereElse)
{
    for (const wchar_t *name : { L"...", L"....", L".. ", L". ", L" ", L".. ." }) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(name)));
        const Faults faults;
        makeFile(swept / L"in\\young", young);
        const std::wstring folder = verbatim(swept / name);
        CreateDirectoryW(folder.c_str(), nullptr);
        makeVerbatim(swept / name / L"maybe", old); // reached or not, as the platform has it
        EXPECT_EQ(0u, runProgram(command).exitCode);
        DeleteFileW((folder + L"\\maybe").c_str());
        RemoveDirectoryW(folder.c_str());
        faults.expectLeft({ L"in", L"in\\young" });
    }
}

// X:\odd\sub has files named "a?b" and "a\x01b", X:\odd a folder named "s*r", all of them old.
TEST(Shape, NamesThatThePlatformRefuses)
{
    const ProgramRun run = runProgram(L"X:\\odd -do 14");
    EXPECT_THAT(run.output, testing::HasSubstr("\n  2 files deleted"));
    EXPECT_EQ("Error deleting folder X:\\odd\\sub:Error 145: " + systemMessage(145) + ".\n",
              errorsOf(run));
    const std::string searched = runProgram(L"X:\\odd\\s* -do 14").output;
    EXPECT_EQ(searched.find("\nStarting"), searched.rfind("\nStarting")) << "only sub was run";
}

TEST(Shape, LinkToAFile)
{
    // In X:\links\files, "to old" and "to young" lead to X:\links\old and X:\links\young.
    makeFile(L"X:\\links\\old", old);
    makeFile(L"X:\\links\\young", young);
    const ProgramRun run = runProgram(L"X:\\links\\files -v -v");
    EXPECT_THAT(run.output, testing::HasSubstr("     -del to old\n     -ignT to young\n"));
    EXPECT_EQ("", errorsOf(run));
    EXPECT_TRUE(fs::exists(L"X:\\links\\young"));
    EXPECT_FALSE(fs::exists(L"X:\\links\\files\\to old"));
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
