// What asks nothing of the platform, from all folders but text/: built for this machine too, with
// sanitizers.
#include "app/free_space_root.h"
#include "app/grouped_number.h"
#include "app/wildcard_parts.h"
#include "install/install_layout.h"
#include "install/relink_line.h"
#include "sweep/file_time.h"

#include "support/text_printing.h"

#include <gmock/gmock.h>

#include <limits>

namespace {

constexpr quint64 epoch = 116444736000000000u; // 1970 in ticks of 100 ns since 1601
constexpr quint64 second = 10000000u;

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

TEST(FreeSpaceRoot, IsTheDriveOrTheShare)
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

TEST(InstallLayout, LiesBelowItsRoots)
{
    InstallPaths paths;
    paths.entries[installRoot].assignQString(q("X:\\a_DEBUG\\"));
    paths.entries[executablesRoot].assignQString(q("Y:\\p\\"));
    paths.entries[statusFolder].assignQString(q("Z:\\s\\"));
    layOutBelowRoots(paths, true, true, false);
    const auto entry = [&paths](InstallEntry at) { return paths.entries[at].toQString(); };
    EXPECT_EQ(q("Z:\\s\\kxJobdata\\"), entry(jobData));
    EXPECT_EQ(q("Y:\\p\\sub\\cfg_global\\"), entry(globalConfigOfPrograms));
    EXPECT_EQ(q("Y:\\p\\render_apps\\_config\\"), entry(renderAppConfig));
    EXPECT_EQ(q("X:\\a_release\\render_apps\\_setenv\\win\\"), entry(setEnvWindows));
    EXPECT_EQ(q("Y:\\p\\bin\\win\\"), entry(bin64Folder));
    layOutRenderApps(paths, fixedText<FixedNarrowString100>("C:/r"));
    EXPECT_EQ(q("C:\\r\\scripts\\"), entry(renderAppScripts));
}

TEST(RelinkLine, NamesARoot)
{
    // Line, root, root of the executables.
    const QString rows[][3] = {
        { q("rOOt = Y:\\d "), q("Y:\\d\\"), q("") },
        { q("Root=Y:/d/"), q("Y:/d/\\"), q("") },
        { q("ExeRoot=Y:\\p"), q(""), q("Y:\\p") },
        { q("Root=") + run(251), run(250), q("") },
        { q("Root"), q(""), q("") },
    };
    for (const auto &row : rows) {
        InstallPaths paths;
        applyRelinkLine(paths, row[0]);
        EXPECT_EQ(row[1], paths.entries[installRoot].toQString()) << row[0].toStdString();
        EXPECT_EQ(row[2], paths.entries[executablesRoot].toQString()) << row[0].toStdString();
    }
}

} // namespace
