#include "app/free_space.h"
#include "app/grouped_number.h"
#include "app/wildcard_folders.h"

#include "support/text_printing.h"

#include <gtest/gtest.h>

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
    const struct
    {
        QString path;
        QString root;
    } rows[] = {
        { q("C:"), q("") },
        { q("C:\\a\\b"), q("C:\\") },
        { q("C:/a"), q("C:/") },
        { q("\\\\srv\\share\\folder"), q("\\\\srv\\share\\") },
        { q("\\\\srv\\share"), q("") },
        { q("\\\\srv"), q("") },
        { q("//srv/share/folder"), q("") },
        { q("ab\\cd"), q("ab\\") },
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.root, freeSpaceRoot(row.path)) << row.path.toStdString();
    EXPECT_EQ(1000u, freeDriveSpaceMiB(q("Q:\\no such drive")));
    const QString tooLong = q("\\\\server\\") + run(245) + q("\\"); // 255 units
    EXPECT_EQ(1000u, freeDriveSpaceMiB(tooLong));
}

TEST(Wildcard, IsSplitAtItsComponent)
{
    const struct
    {
        const char *path;
        const char *base;
        const char *nameStart;
        const char *nameEnd;
        const char *rest;
    } rows[] = {
        { "*", "", "", "", "" },
        { "C:\\Users\\m*\\Temp", "C:\\Users\\", "m", "", "\\Temp" },
        { "C:\\*", "C:\\", "", "", "" },
        { "C:\\a*b*c\\d*\\", "C:\\", "a", "b*c", "\\d*\\" },
        { "abc*", "abc\\", "", "", "" },
        { "a*x", "a", "", "x", "" },
        { "C:/Users/*", "C:/Users/\\", "", "", "" },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.path);
        const WildcardParts parts = splitAtWildcard(q(row.path));
        EXPECT_EQ(q(row.base), parts.base);
        EXPECT_EQ(q(row.nameStart), parts.nameStart);
        EXPECT_EQ(q(row.nameEnd), parts.nameEnd);
        EXPECT_EQ(q(row.rest), parts.rest);
    }
}

} // namespace
