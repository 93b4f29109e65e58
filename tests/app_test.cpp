#include "app/folder_run.h"
#include "app/free_space.h"
#include "app/grouped_number.h"
#include "app/wildcard_folders.h"

#include "support/files.h"
#include "support/text_printing.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

TEST(GroupedNumber, SplitsOffThreeGroupsAtMost)
{
    const struct
    {
        qint64 number;
        const char *text;
    } rows[] = {
        { 0, "0" },
        { 999, "999" },
        { 1000, "1000" },
        { 1001, "1 001" },
        { 123456, "123 456" },
        { 1000000, "1000 000" },
        { 1001000, "1 001 000" },
        { 1234567890, "1 234 567 890" },
        { 1234567890123, "1234 567 890 123" },
        { -1000, "-1000" },
        { -1500, "-1 500" },
        { std::numeric_limits<qint64>::min(), "-9223372036 854 775 808" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(q(row.text), formatGroupedNumber(row.number));
}

TEST(FreeSpace, AsksAboutTheRootOfThePath)
{
    // clang-format off
    const char *const rows[][2] = {
        { "C:", "" }, { "C:\\a\\b", "C:\\" }, { "C:/a", "C:/" },
        { "\\\\srv\\share\\folder", "\\\\srv\\share\\" }, { "\\\\srv\\share", "" },
        { "\\\\srv", "" }, { "//srv/share/folder", "" }, { "ab\\cd", "ab\\" },
    };
    // clang-format on
    for (const auto &row : rows)
        EXPECT_EQ(q(row[1]), freeSpaceRoot(q(row[0]))) << row[0];
    ULARGE_INTEGER bytes;
    GetDiskFreeSpaceExW(L"X:\\", &bytes, nullptr, nullptr);
    EXPECT_NEAR(static_cast<double>(bytes.QuadPart >> 20), freeDriveSpaceMiB(q("X:\\a")), 2000);
    EXPECT_EQ(1000u, freeDriveSpaceMiB(q("Q:\\no such drive")));
    const QString tooLong = q("\\\\server\\") + run(245) + q("\\"); // 255 units
    EXPECT_EQ(1000u, freeDriveSpaceMiB(tooLong));
}

TEST(FolderRun, HandsOnItsReportAtOnce)
{
    const ScratchFolder scratch;
    EXPECT_THAT(flushedBy([] { runFolder(q("X:\\scratch"), 14, false); }),
                testing::EndsWith(" MiB\n\n"));
    EXPECT_EQ("Warning: directory X:\\no does not exist!\n",
              flushedBy([] { runFolder(q("X:\\no"), 14, false); }));
}

TEST(Wildcard, IsSplitAtItsComponent)
{
    // Path, base, start and end of the name, rest.
    // clang-format off
    const char *const rows[][5] = {
        { "*", "", "", "", "" }, { "C:\\Users\\m*\\Temp", "C:\\Users\\", "m", "", "\\Temp" },
        { "C:\\*", "C:\\", "", "", "" }, { "C:\\a*b*c\\d*\\", "C:\\", "a", "b*c", "\\d*\\" },
        { "abc*", "abc\\", "", "", "" }, { "a*x", "a", "", "x", "" },
        { "C:/Users/*", "C:/Users/\\", "", "", "" },
    };
    // clang-format on
    for (const auto &row : rows) {
        const WildcardParts parts = splitAtWildcard(q(row[0]));
        EXPECT_EQ(q(row[1]), parts.base) << row[0];
        EXPECT_EQ(q(row[2]), parts.nameStart) << row[0];
        EXPECT_EQ(q(row[3]), parts.nameEnd) << row[0];
        EXPECT_EQ(q(row[4]), parts.rest) << row[0];
    }
}

} // namespace
