#include "text/fixed_string.h"
#include "text/path.h"

#include "support/text_printing.h"

#include <gmock/gmock.h>

namespace {

template <typename Fixed>
struct FixedStringVariant : testing::Test
{
};
using Variants = testing::Types<FixedWideString, FixedWideString250, FixedNarrowString100,
                                FixedNarrowString250, FixedNarrowString500>;
TYPED_TEST_SUITE(FixedStringVariant, Variants);

TYPED_TEST(FixedStringVariant, CutsAtItsCapacityWithoutATrace)
{
    constexpr int capacity = TypeParam::capacity;
    const QByteArray letters(600, 'a');
    auto text = fixedText<TypeParam>(letters.constData());
    EXPECT_EQ(capacity, text.length);
    EXPECT_EQ(0, text.value[capacity]);

    text.setLength(-1);
    EXPECT_EQ(0, text.length);
    EXPECT_EQ(0, text.value[0]);
    text.setLength(700);
    EXPECT_EQ(capacity, text.length);
    text.assignNarrow(letters.constData());
    text.setLength(capacity - 5);
    text.appendUnits(fixedText<TypeParam>("0123456789").value, 10);
    EXPECT_EQ(run(capacity - 5, 'a') + q("01234"), text.toQString());
    EXPECT_EQ(0, text.value[capacity]);
    text.insertAt(1, fixedText<TypeParam>("bc"));
    EXPECT_EQ(q("abc") + run(capacity - 6, 'a') + q("012"), text.toQString());
}

TYPED_TEST(FixedStringVariant, ZeroesBehindTheTextOnlyWhereItSaysSo)
{
    auto text = fixedText<TypeParam>("abcdef");
    text.setLength(2);
    text.setLength(6);
    EXPECT_EQ(QString(q("ab") + QChar(0) + q("def")), text.toQString());
    text.recomputeLength();
    EXPECT_EQ(q("ab"), text.toQString());
    text.zeroTail();
    EXPECT_EQ(0, text.value[5]);
    std::fill(text.value, text.value + TypeParam::capacity + 1, text.value[0]);
    text.recomputeLength();
    EXPECT_EQ(TypeParam::capacity, text.length);
    EXPECT_EQ(0, text.value[TypeParam::capacity]);
    text.assignNarrow("x");
    EXPECT_EQ(0, text.value[TypeParam::capacity - 1]);
    text.assignNarrow(nullptr);
    EXPECT_TRUE(text.isEmpty());
}

TEST(FixedString, TakesBytesWithTheirSignAndUnitsAsTheyAre)
{
    EXPECT_EQ(char16_t(0xFFE9), fixedText<FixedWideString>("\xE9").value[0]);
    EXPECT_EQ('\xE9', fixedText<FixedNarrowString250>("\xE9").value[0]);
    const QString marked = QString(QChar(0xFEFF)) + q("a"); // a byte order mark is part of a name
    EXPECT_EQ(marked, wide(marked).toQString());
    FixedNarrowString100 narrow;
    narrow.assignLatin1(q("\xE4") + QChar(0x20AC));
    EXPECT_EQ(q("\xE4?"), narrow.toQString());
    EXPECT_EQ(500, wide(run(501)).length);
}

TEST(FixedString, EditsInPlace)
{
    const struct
    {
        const char *before;
        void (*edit)(FixedWideString &);
        const char *after;
    } rows[] = {
        { "abc", [](auto &s) { s.insertAt(1, wide(q("--"))); }, "a--bc" },
        { "abc", [](auto &s) { s.insertAt(9, wide(q("--"))); }, "abc--" },
        { "abcd", [](auto &s) { s.removeRange(1, 2); }, "ad" },
        { "abcd", [](auto &s) { s.removeRange(2, 900); }, "ab" },
        { "abcd", [](auto &s) { s.removeRange(9, 1); }, "abcd" },
        { "abcd", [](auto &s) { s = s.left(3); }, "abc" },
        { "abcd", [](auto &s) { s = s.left(-1); }, "" },
        { "abcd", [](auto &s) { s.appendUnits(nullptr, 3); }, "abcd" },
        { "abcd", [](auto &s) { s.appendUnits(s.value, 0); }, "abcd" },
        { "az{\xE4", [](auto &s) { s.toUpper(); }, "AZ{\xE4" },
        { "a/b\\/", [](auto &s) { s.toBackslashes(); }, "a\\b\\\\" },
        { "\\\\\\", [](auto &s) { s.replaceAllNoCase(wide(q("\\\\")), wide(q("\\"))); }, "\\\\" },
        { "xAbxaB", [](auto &s) { s.replaceAllNoCase(wide(q("ab")), wide(q("abab"))); },
          "xababxabab" },
        { "aaa", [](auto &s) { s.replaceAllNoCase(wide(q("a")), wide(q(""))); }, "" },
    };
    for (const auto &row : rows) {
        FixedWideString text = wide(q(row.before));
        row.edit(text);
        EXPECT_EQ(q(row.after), text.toQString()) << row.before;
        EXPECT_EQ(0, text.value[text.length]);
    }
}

TEST(FixedString, FindsTextWithoutRegardToCase)
{
    const struct
    {
        const char *text;
        const char *find;
        int from;
        int position;
    } rows[] = {
        { "ABC", "abc", 0, 0 },
        { "ABC", "abd", 0, -1 },
        { "ABC", "", 0, -1 },
        { "ABC", "bc", 2, -1 },
        { "abXaB", "AB", 1, 3 },
        { "adbcbc", "bc", 0, 2 }, // the units of "ad" have the sum of those of "bc"
        { "ab", "abc", 0, -1 },
        { "aab", "ab", -7, 1 },
    };
    for (const auto &row : rows)
        EXPECT_EQ(row.position, wide(q(row.text)).indexOfNoCase(wide(q(row.find)), row.from))
            << row.find << " in " << row.text;
    const FixedWideString text = wide(q("aBcb"));
    const int found[] = { text.indexOfUnitNoCase(u'b', 0), text.indexOfUnitNoCase(u'B', 2),
                          text.indexOfUnitNoCase(u'b', 4), text.indexOfUnitNoCase(u'x', 0) };
    EXPECT_THAT(found, testing::ElementsAre(1, 3, 1, -1));
    EXPECT_EQ(2, fixedText<FixedNarrowString250>("C:\\a\\").firstBackslash());
}

TEST(FixedString, ComparesWithoutRegardToCase)
{
    const struct
    {
        const char *text;
        const char *other;
        bool starts;
        bool ends;
        bool equal;
        int order;
    } rows[] = {
        { "ABc", "ab", true, false, false, 1 },      { "abc", "BC", false, true, false, -1 },
        { "aB\xE4", "Ab\xE4", true, true, true, 0 }, { "\xE4", "\xC4", false, false, false, 1 },
        { "ab", "abc", false, false, false, -1 },    { "ab", "", false, false, false, 1 },
        { "", "", false, false, true, 0 },
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(std::string(row.text) + " and " + row.other);
        const FixedWideString text = wide(q(row.text));
        FixedWideString other = wide(q(row.other));
        EXPECT_EQ(row.ends, text.endsWithNoCase(other));
        EXPECT_EQ(row.equal, text.equalsNoCase(other));
        const int order = text.compareNoCase(other);
        EXPECT_EQ(row.order, order < 0 ? -1 : order > 0 ? 1 : 0);
        EXPECT_EQ(row.starts, text.startsWithNoCase(other));
    }
    FixedWideString prefix = wide(q("xy"));
    EXPECT_FALSE(wide(q("ABc")).startsWithNoCase(prefix));
    EXPECT_EQ(q("XY"), prefix.toQString()); // its side effect
    // By the bytes in memory: U+0102 is 02 01 there, U+0201 is 01 02.
    EXPECT_GT(wide(QChar(0x0102)).compareNoCase(wide(QChar(0x0201))), 0);
    EXPECT_TRUE(wide(q("\\\\srv")).isUncPath());
    EXPECT_FALSE(wide(q("\\srv")).isUncPath());
    EXPECT_TRUE(wide(q("..\\x")).startsWithParentReference());
    EXPECT_FALSE(wide(q("aB")).firstUnitIs(u'A'));
}

TEST(Path, NormalizesSeparatorsAndLeadingParents)
{
    // Path, expected, expected of the fixed form where that differs.
    const char *const rows[][3] = {
        { "/", "/" },
        { "C:/a//b/../c", "C:/a/c", "C:\\a\\c" },
        { "C:\\a/b//c", "C:\\a/b//c", "C:\\a\\b\\c" },
        { "x\\\\\\y", "x\\\\y" },
        { "\\\\\\\\x", "\\\\\\x" },
        { "x\\\\\\\\\\y", "x\\\\\\y" },
        { "//srv//share", "//srv/share", "\\\\srv\\share" },
        { "C:\\data\\jobs\\..\\..\\bin\\", "C:\\bin\\" },
        { "C:\\x\\..\\y", "C:\\y" },
        { "C:\\..\\y", "y" },
        { "a\\b\\..\\..\\c", "a\\c" },
        { "ab\\..\\cd\\..\\e", "cd\\..\\e" },
        { "..\\x", "x" },
        { "<Root>\\..\\x", "<Root>\\..\\x" },
        { "<Root\\a>\\..\\x", "<Root\\x" },
        { "<Root>\\a\\..\\x", "<Root>\\x" },
        { "\\\\srv\\share\\..\\x", "\\\\srv\\sharex" },
        { "\\\\srv\\share\\dir\\..\\x", "\\\\srv\\share\\x" },
    };
    for (const auto &row : rows) {
        EXPECT_EQ(q(row[1]), normalizePath(q(row[0]))) << row[0];
        FixedWideString fixed = wide(q(row[0]));
        const QString expected = q(row[2] ? row[2] : row[1]);
        EXPECT_EQ(expected, normalizePathFixed(fixed).toQString()) << row[0];
        EXPECT_EQ(expected, fixed.toQString());
    }
}

TEST(Path, GoesUpOneFolder)
{
    const char *const rows[][2] = {
        { "C:", "C:" },
        { "C:\\", "" },
        { "C:\\a", "C:\\" },
        { "C:\\a\\", "C:\\" },
        { "C:\\a\\b", "C:\\a\\" },
        { "abc", "" },
        { "a\\b", "a\\" },
        { "a\\b\\c", "a\\b\\c" }, // shaped like a server with a share
        { "\\\\srv", "\\\\" },
        { "\\\\srv\\share\\", "\\\\srv\\share" },
        { "\\\\srv\\share\\dir", "\\\\srv\\share\\" },
    };
    for (const auto &row : rows) {
        EXPECT_EQ(q(row[1]), parentFolder(q(row[0]), QLatin1Char('\\'))) << row[0];
        FixedWideString fixed = wide(q(row[0]));
        EXPECT_EQ(q(row[1]), parentFolderFixed(fixed).toQString()) << row[0];
    }
    EXPECT_EQ(q("a\\b/"), parentFolder(q("a\\b/c"), QLatin1Char('/')));
    EXPECT_EQ(q("a\\b\\"), toBackslashPath(q("a/b\\")));
    EXPECT_EQ(-1, lastBackslash(FixedWideString()));
}

TEST(Path, TakesTheFolderOfAPath)
{
    const char *const rows[][2] = {
        { "C:", "C:" },
        { "C:\\m", "C:\\" },
        { "C:\\a\\b.txt", "C:\\a\\" },
        { "C:\\a\\", "C:\\a\\" },
        { "\\\\server\\share", "\\\\server\\share\\" },
        { "\\\\server\\share\\m", "\\\\server\\share\\" },
        { "abc", "abc\\" },
        { "a\\bc", "a\\bc\\" },
        { "C:/a/b", "C:/a/b\\" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(q(row[1]), folderOfPath(q(row[0]))) << row[0];
}

TEST(Path, PutsTheLongPathPrefixInFront)
{
    const QString rows[][2] = {
        { q("C:\\a"), q("\\\\?\\C:\\a") },
        { q("\\\\server\\share\\x"), q("\\\\?\\UNC\\server\\share\\x") },
        { q("\\\\?\\C:\\a"), q("\\\\?\\UNC\\?\\C:\\a") },
        { q("a/b"), q("\\\\?\\a/b") },
        { run(500), q("\\\\?\\") + run(496) },
    };
    for (const auto &row : rows) {
        FixedWideString prefixed = wide(q("overwritten"));
        EXPECT_EQ(row[1], withLongPathPrefix(prefixed, wide(row[0])).toQString());
        EXPECT_EQ(row[1], prefixed.toQString());
    }
}

} // namespace
