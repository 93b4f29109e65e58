#include "text/entities.h"
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
TYPED_TEST_SUITE(FixedStringVariant, Variants, ); // without the comma it is an extension

TYPED_TEST(FixedStringVariant, CutsAtItsCapacityAndLeavesStaleUnits)
{
    constexpr int capacity = TypeParam::capacity;
    const QByteArray letters(600, 'a');
    auto text = fixedText<TypeParam>(letters.constData());
    EXPECT_EQ(run(capacity, 'a'), text.toQString());
    EXPECT_EQ(0, text.value[capacity]);
    std::fill(text.value, text.value + capacity + 1, text.value[0]);
    text.recomputeLength(); // there is no terminator
    EXPECT_EQ(capacity, text.length);
    EXPECT_EQ(0, text.value[capacity]);
    text.setLength(capacity - 5);
    text.appendUnits(fixedText<TypeParam>("0123456789").value, 10);
    EXPECT_EQ(run(capacity - 5, 'a') + q("01234"), text.toQString());
    text.insertAt(1, fixedText<TypeParam>("bc"));
    EXPECT_EQ(q("abc") + run(capacity - 6, 'a') + q("012"), text.toQString());
    text.replaceAllNoCase(fixedText<TypeParam>("AA"), fixedText<TypeParam>("xyz"));
    EXPECT_EQ(capacity, text.length);
    text.setLength(700);
    EXPECT_EQ(capacity, text.length);
    text.setLength(-1);
    EXPECT_TRUE(text.isEmpty() && text.value[0] == 0);

    text.assignNarrow("abcdef");
    text.setLength(2);
    TypeParam copy;
    copy.assign(text);
    copy.setLength(6);
    EXPECT_EQ(QString(q("ab") + QChar(0) + q("def")), copy.toQString());
    copy.recomputeLength();
    EXPECT_EQ(q("ab"), copy.toQString());
    copy.zeroTail();
    text.clear();
    for (const TypeParam &cleared : { copy, text })
        EXPECT_EQ(0, cleared.value[0 + 2] | cleared.value[5]);
    copy.assignNarrow(nullptr);
    EXPECT_TRUE(copy.isEmpty());
}

TEST(FixedString, TakesBytesWithTheirSignAndUnitsAsTheyAre)
{
    EXPECT_EQ(char16_t(0xFFE9), fixedText<FixedWideString>("\xE9").value[0]);
    EXPECT_EQ('\xE9', fixedText<FixedNarrowString250>("\xE9").value[0]);
    const QString marked = QString(QChar(0xFEFF)) + q("a"); // a byte order mark is part of a name
    EXPECT_EQ(marked, wide(marked).toQString());
    auto narrow = fixedText<FixedNarrowString100>("before");
    narrow.assignLatin1(q("\xE4") + QChar(0x20AC) + run(100));
    EXPECT_EQ(q("\xE4?") + run(98), narrow.toQString());
    auto text = fixedText<FixedWideString250>("before");
    text.assignQString(run(251));
    EXPECT_EQ(run(250), text.toQString());
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
        { "abc", [](auto &s) { s.insertAt(-1, wide(q("--"))); }, "--abc" },
        { "abcd", [](auto &s) { s.removeRange(1, 2); }, "ad" },
        { "abcd", [](auto &s) { s.removeRange(2, 900); }, "ab" },
        { "abcd", [](auto &s) { s.removeRange(9, 1); }, "abcd" },
        { "abcd", [](auto &s) { s.removeRange(-1, 2); }, "bcd" },
        { "abcd", [](auto &s) { s = s.left(3); }, "abc" },
        { "abcd", [](auto &s) { s = s.left(-1); }, "" },
        { "abcd", [](auto &s) { s.appendUnits(nullptr, 3); }, "abcd" },
        { "abcd", [](auto &s) { s.appendUnits(s.value, 0); }, "abcd" },
        { "`az{\xE4", [](auto &s) { s.toUpper(); }, "`AZ{\xE4" },
        { "a/b\\/", [](auto &s) { s.toBackslashes(); }, "a\\b\\\\" },
        { "\\\\\\", [](auto &s) { s.replaceAllNoCase(wide(q("\\\\")), wide(q("\\"))); }, "\\\\" },
        { "xAbxaB", [](auto &s) { s.replaceAllNoCase(wide(q("ab")), wide(q("aba"))); },
          "xabaxaba" },
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
    const auto find = [](const char *text, const char *searched, int from) {
        return wide(q(text)).indexOfNoCase(wide(q(searched)), from);
    };
    EXPECT_EQ(0, find("ABC", "abc", 0));
    EXPECT_EQ(-1, find("ABC", "abd", 0));
    EXPECT_EQ(-1, find("ABC", "", 0));
    EXPECT_EQ(-1, find("ABC", "bc", 2));
    EXPECT_EQ(3, find("abXaB", "AB", 1));
    EXPECT_EQ(2, find("adbcbc", "bc", 0)); // the units of "ad" have the sum of those of "bc"
    EXPECT_EQ(-1, find("ab", "abc", 0));
    EXPECT_EQ(1, find("aab", "ab", -7));
    const FixedWideString text = wide(q("aBcb"));
    const int found[] = { text.indexOfUnitNoCase(u'b', 0), text.indexOfUnitNoCase(u'B', 2),
                          text.indexOfUnitNoCase(u'b', 4), text.indexOfUnitNoCase(u'b', -1),
                          text.indexOfUnitNoCase(u'x', 0) };
    EXPECT_THAT(found, testing::ElementsAre(1, 3, 1, 1, -1));
    EXPECT_EQ(2, fixedText<FixedNarrowString250>("C:\\a\\").firstBackslash());
}

TEST(FixedString, ComparesWithoutRegardToCase)
{
    // Text, other, and what holds: starts, ends, equal, smaller, greater.
    const char *const rows[][3] = {
        { "ABc", "ab", "s>" },   { "abc", "BC", "e<" }, { "aB\xE4", "Ab\xE4", "see" },
        { "\xE4", "\xC4", ">" }, { "ab", "abcd", "<" }, { "abc", "a", "s>" },
        { "ab", "", ">" },       { "", "", "=" },
    };
    for (const auto &row : rows) {
        const FixedWideString text = wide(q(row[0]));
        FixedWideString other = wide(q(row[1]));
        const int order = text.compareNoCase(other);
        std::string holds = text.endsWithNoCase(other) ? "e" : "";
        holds += text.equalsNoCase(other) ? text.isEmpty() ? "=" : "e" : "";
        holds += order < 0 ? "<" : order > 0 ? ">" : "";
        EXPECT_EQ(row[2], (text.startsWithNoCase(other) ? "s" : "") + holds) << row[0];
    }
    EXPECT_EQ(1, wide(q("abc")).compareNoCase(wide(q("A"))));
    EXPECT_EQ(-1, wide(q("A")).compareNoCase(wide(q("abc"))));
    // By the bytes in memory: U+0102 is 02 01 there, U+0201 is 01 02.
    EXPECT_GT(wide(QChar(0x0102)).compareNoCase(wide(QChar(0x0201))), 0);
    FixedWideString prefix = wide(q("xy"));
    EXPECT_FALSE(wide(q("a")).startsWithNoCase(prefix)); // too long to be looked at
    EXPECT_EQ(q("xy"), prefix.toQString());
    EXPECT_FALSE(wide(q("ABc")).startsWithNoCase(prefix));
    EXPECT_EQ(q("XY"), prefix.toQString()); // its side effect

    const FixedWideString share = wide(q("\\\\srv"));
    EXPECT_TRUE(share.isUncPath() && share.firstUnitIs(u'\\') && !share.endsWithBackslash());
    const FixedWideString above = wide(q("..a\\"));
    EXPECT_TRUE(above.startsWithParentReference() && above.endsWithBackslash());
    const FixedWideString dot = wide(q(".\\a"));
    EXPECT_FALSE(dot.startsWithParentReference() || wide(q("\\a")).isUncPath());
    EXPECT_FALSE(above.firstUnitIs(u'a') || wide(q("aB")).firstUnitIs(u'A'));
}

TEST(Path, NormalizesSeparatorsAndLeadingParents)
{
    // Path, expected, expected of the fixed form where that differs.
    // clang-format off
    const char *const rows[][3] = {
        { "/", "/" }, { "C:/a//b/../c", "C:/a/c", "C:\\a\\c" },
        { "C:\\a/b//c", "C:\\a/b//c", "C:\\a\\b\\c" }, { "x\\\\\\y", "x\\\\y" },
        { "\\\\\\\\x", "\\\\\\x" }, { "x\\\\\\\\\\y", "x\\\\\\y" },
        { "//srv//share", "//srv/share", "\\\\srv\\share" },
        { "C:\\data\\jobs\\..\\..\\bin\\", "C:\\bin\\" }, { "C:\\x\\..\\y", "C:\\y" },
        { "C:\\..\\y", "y" }, { "a\\b\\..\\..\\c", "a\\c" }, { "ab\\..\\cd\\..\\e", "cd\\..\\e" },
        { "..\\x", "x" }, { "a/", "a/", "a\\" },
        { "a..\\b", "ab" }, // behind a name too
        { "...\\x", ".x" }, { "<ab\\..\\x", "x" }, { "a>\\..\\x", "x" },
        { "<Root>..\\x", "<Root>..\\x" }, { "<Root>\\..\\x", "<Root>\\..\\x" },
        { "<Root\\a>\\..\\x", "<Root\\x" }, { "<Root>\\a\\..\\x", "<Root>\\x" },
        { "\\\\srv\\share\\..\\x", "\\\\srv\\sharex" },
        { "\\\\srv\\share\\dir\\..\\x", "\\\\srv\\share\\x" },
    };
    // clang-format on
    for (const auto &row : rows) {
        EXPECT_EQ(q(row[1]), normalizePath(q(row[0]))) << row[0];
        FixedWideString fixed = wide(q(row[0]));
        const QString expected = q(row[2] != nullptr ? row[2] : row[1]);
        EXPECT_EQ(expected, normalizePathFixed(fixed).toQString()) << row[0];
        EXPECT_EQ(expected, fixed.toQString());
    }
}

TEST(Path, GoesUpOneFolder)
{
    // clang-format off
    const char *const rows[][2] = {
        { "C:", "C:" }, { "C:\\", "" }, { "C:\\a", "C:\\" }, { "C:\\a\\", "C:\\" },
        { "C:\\a\\b", "C:\\a\\" }, { "abc", "" }, { "a\\b", "a\\" },
        { "a\\b\\c", "a\\b\\c" }, // shaped like a server with a share
        { "\\\\srv", "\\\\" },
        { "\\:abc", "\\:abc\\" }, // a colon where a drive has it
        { "\\\\srv\\share\\", "\\\\srv\\share" }, { "\\\\srv\\share\\dir", "\\\\srv\\share\\" },
    };
    // clang-format on
    for (const auto &row : rows) {
        EXPECT_EQ(q(row[1]), parentFolder(q(row[0]), QLatin1Char('\\'))) << row[0];
        FixedWideString fixed = wide(q(row[0]));
        EXPECT_EQ(q(row[1]), parentFolderFixed(fixed).toQString()) << row[0];
    }
    EXPECT_EQ(q("a\\b/"), parentFolder(q("a\\b/c"), QLatin1Char('/')));
    EXPECT_EQ(q("a\\b\\"), toBackslashPath(q("a/b\\")));
    EXPECT_EQ(3, lastBackslash(wide(q("a\\b\\c"))));
    EXPECT_EQ(-1, lastBackslash(wide(q("a/b"))));
}

TEST(Path, TakesTheFolderOfAPath)
{
    // clang-format off
    const char *const rows[][2] = {
        { "C:", "C:" }, { "C:\\m", "C:\\" }, { "C:\\a\\b.txt", "C:\\a\\" },
        { "C:\\a\\", "C:\\a\\" }, { "\\\\server\\share", "\\\\server\\share\\" },
        { "\\\\server\\share\\m", "\\\\server\\share\\" }, { "abc", "abc\\" },
        { "a\\b\\c", "a\\b\\c\\" }, { "a\\bc", "a\\bc\\" }, { "C:/a/b", "C:/a/b\\" },
    };
    // clang-format on
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

TEST(Entities, AreDecodedInOrder)
{
    const char *const rows[][2] = {
        { "&lt;&gt;&quot;&apos;&amp;", "<>\"'&" },
        { "&#196;&#214;&#220;&#228;&#246;&#252;&#223;", "\xC4\xD6\xDC\xE4\xF6\xFC\xDF" },
        { "&amp;lt;&amp;#196;&amp;amp;", "&lt;\xC4&amp;" },
        { "&LT;&#65;& ;", "&LT;&#65;& ;" },
    };
    for (const auto &row : rows)
        EXPECT_EQ(q(row[1]), decodeEntities(q(row[0]))) << row[0];
}

} // namespace
