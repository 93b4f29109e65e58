// What asks nothing of the platform, from all folders but text/: built for this machine too, with
// sanitizers.
#include "app/free_space_root.h"
#include "app/grouped_number.h"
#include "app/wildcard_parts.h"
#include "sweep/file_time.h"

#include "support/text_printing.h"

#include <gtest/gtest.h>

namespace {

TEST(FileTime, CountsWholeSecondsFrom1970)
{
    for (const QStringList &row : rowsOf(2, R"(
            116444736000000000 -> 0     116444736009999999 -> 0   116444736010000000 -> 1
            116444735990000000 -> -1    116444735990000001 -> 0   0 -> -11644473600
            9223372036854775807 -> 910692730085)")) {
        const quint64 ticks = row[0].toULongLong(); // of 100 ns
        TimeStamp seconds = 7;
        fileTimeToSeconds(seconds, static_cast<quint32>(ticks), static_cast<quint32>(ticks >> 32));
        EXPECT_EQ(row[1].toLongLong(), seconds) << row[0];
    }
}

TEST(FileTime, HasElapsedOnlyBehindTheSpan)
{
    TimeStamp stamp = 100;
    const TimeStamp end = 105;
    const TimeStamp behind = 106;
    EXPECT_FALSE(hasElapsed(stamp, 5, true, &end));
    EXPECT_TRUE(hasElapsed(stamp, 5, false, &behind));
    EXPECT_EQ(100, stamp);
    EXPECT_TRUE(hasElapsed(stamp, 5, true, &behind));
    EXPECT_EQ(106, stamp);
    EXPECT_FALSE(hasElapsed(stamp, 1LL << 32, false, &behind)); // more than 32 bits
    EXPECT_TRUE(hasElapsed(stamp, 5, true));
    EXPECT_FALSE(hasElapsed(stamp, 5, false)); // it is the current time now

    EXPECT_EQ(2147472000, minutesToSeconds(daysToMinutes(24855)));
    EXPECT_EQ(-2147408896, minutesToSeconds(daysToMinutes(24856)));
    EXPECT_EQ(2147483520, daysToMinutes(1491308));
    EXPECT_EQ(-2147482336, daysToMinutes(1491309));
}

TEST(GroupedNumber, SplitsOffThreeGroupsAtMost)
{
    for (const char *text :
         { "0", "999", "1000", "1 001", "123 456", "1000 000", "1 001 000", "1 234 567 890",
           "1234 567 890 123", "-1000", "-1 500", "-9223372036 854 775 808" })
        EXPECT_EQ(q(text), formatGroupedNumber(q(text).remove(QLatin1Char(' ')).toLongLong()));
}

TEST(FreeSpaceRoot, IsTheDriveOrTheShare)
{
    for (const QStringList &row : rowsOf(2, R"(
            C: -> ''   C:\a\b -> C:\   C:/a -> C:/   C:\ -> C:\   \\srv\share\folder -> \\srv\share\
            \\s\share\x -> \\s\share\
            \\srv\share -> ''   \\srv -> ''   //srv/share/folder -> ''   ab\cd -> ab\ )"))
        EXPECT_EQ(row[1], freeSpaceRoot(row[0])) << row[0];
}

TEST(Wildcard, IsSplitAtItsComponent)
{
    // Path, base, start and end of the name, rest.
    for (const QStringList &row : rowsOf(5, R"(
            * -> '' '' '' ''             C:\Users\m*\Temp -> C:\Users\ m '' \Temp
            C:\* -> C:\ '' '' ''         C:\a*b*c\d*\ -> C:\ a b*c \d*\
            abc* -> abc\ '' '' ''        a*x -> a '' x ''
            C:/Users/* -> C:/Users/\ '' '' '')")) {
        const WildcardParts parts = splitAtWildcard(row[0]);
        EXPECT_EQ(row,
                  QStringList({ row[0], parts.base, parts.nameStart, parts.nameEnd, parts.rest }));
    }
}

} // namespace
