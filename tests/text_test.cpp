// The text layer, built for this machine too, with sanitizers.
#include "text/entities.h"
#include "text/fixed_string.h"
#include "text/grouped_number.h"
#include "text/path.h"

#include "support/text_printing.h"

#include <gtest/gtest.h>

#include <algorithm>

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
    auto text = fixedText<TypeParam>(QByteArray(600, 'a').constData());
    EXPECT_EQ(repeated(capacity, 'a'), text.toQString());
    std::fill(text.value, text.value + capacity + 1, text.value[0]);
    text.recomputeLength(); // there is no terminator
    EXPECT_EQ(capacity, text.length);
    EXPECT_EQ(0, text.value[capacity]);
    text.setLength(capacity - 5);
    text.appendUnits(fixedText<TypeParam>("0123456789").value, 10);
    EXPECT_EQ(repeated(capacity - 5, 'a') + q("01234"), text.toQString());
    text.setLength(700);
    EXPECT_EQ(capacity, text.length);
    text.setLength(-1);
    EXPECT_TRUE(text.isEmpty() && text.value[0] == 0);

    const auto unitsBehind = [](const TypeParam &string, int from) {
        return std::count_if(string.value + from, string.value + capacity + 1,
                             [](auto unit) { return unit != 0; });
    };
    text.assignNarrow("abcdef");
    EXPECT_EQ(0, unitsBehind(text, 6));
    text.setLength(2);
    TypeParam copy;
    copy.assign(text);
    copy.setLength(6);
    EXPECT_EQ(QString(q("ab") + QChar(0) + q("def")), copy.toQString());
    copy.recomputeLength();
    EXPECT_EQ(q("ab"), copy.toQString());
    std::fill(copy.value + 2, copy.value + capacity + 1, copy.value[0]);
    copy.zeroTail();
    text.clear();
    EXPECT_EQ(0, unitsBehind(copy, 2) + unitsBehind(text, 0));
    copy.assignNarrow(nullptr);
    EXPECT_TRUE(copy.isEmpty());
}

TEST(FixedString, TakesBytesWithTheirSignAndUnitsAsTheyAre)
{
    EXPECT_EQ(char16_t(0xFFE9), fixedText<FixedWideString>("\xE9").value[0]);
    const QString marked = QString(QChar(0xFEFF)) + q("a"); // a byte order mark is part of a name
    EXPECT_EQ(marked, wide(marked).toQString());
    auto narrow = fixedText<FixedNarrowString100>("before");
    narrow.assignLatin1(q("\xE4") + QChar(0x20AC) + repeated(100));
    EXPECT_EQ(q("\xE4?") + repeated(98), narrow.toQString());
}

TEST(FixedString, EditsFindsAndComparesWithoutRegardToCase)
{
    // Text, searched text, start, position. The units of "ad" have the sum of those of "bc".
    for (const QStringList &row : rowsOf(4, R"(
            ABC abc 0 -> 0   ABC abd 0 -> -1   ABC '' 0 -> -1   ABC bc 2 -> -1   abXaB AB 1 -> 3
            aab ab -7 -> 1   adbcbc bc 0 -> 2)"))
        EXPECT_EQ(row[3].toInt(), wide(row[0]).indexOfNoCase(wide(row[1]), row[2].toInt()))
            << row[1];
    const FixedWideString text = wide(q("aBcb"));
    for (const QStringList &row : rowsOf(3, "b 0 -> 1  B 2 -> 3  b 4 -> 1  b -1 -> 1  x 0 -> -1"))
        EXPECT_EQ(row[2].toInt(), text.indexOfUnitNoCase(row[0].utf16()[0], row[1].toInt()));

    EXPECT_TRUE(text.firstUnitIs(u'a') && !text.firstUnitIs(u'A'));
    EXPECT_TRUE(wide(q("xyZ")).endsWithNoCase(wide(q("Yz"))) && text.equalsNoCase(wide(q("AbCb"))));
    EXPECT_FALSE(text.equalsNoCase(wide(q("aBc"))));
    EXPECT_EQ(-1, wide(q("abc")).compareNoCase(wide(q("ABCD"))));
    EXPECT_EQ(1, wide(q("z1")).compareNoCase(wide(q("Z"))));
    // By the bytes in memory: U+0102 is 02 01 there, U+0201 is 01 02.
    EXPECT_GT(wide(QChar(0x0102)).compareNoCase(wide(QChar(0x0201))), 0);
    FixedWideString edited = wide(q("abcd"));
    edited.insertAt(1, wide(q("--")));
    edited.removeRange(2, 2);
    EXPECT_EQ(q("a-cd"), edited.toQString());
    FixedWideString prefix;
    EXPECT_FALSE(edited.startsWithNoCase(prefix));
    prefix = wide(q("xy"));
    EXPECT_FALSE(wide(q("a")).startsWithNoCase(prefix)); // too long to be looked at
    EXPECT_EQ(q("xy"), prefix.toQString());
    EXPECT_FALSE(wide(q("ABc")).startsWithNoCase(prefix));
    EXPECT_EQ(q("XY"), prefix.toQString()); // its side effect
}

TEST(Path, NormalizesSeparatorsAndLeadingParents)
{
    // Path, result, and that of the fixed form, "=" being the same.
    for (const QStringList &row : rowsOf(3, R"(
            / -> / =   a/ -> a/ a\   C:/a//b/../c -> C:/a/c C:\a\c   C:\a/b//c -> C:\a/b//c C:\a\b\c
            x\\\y -> x\\y =   \\\\x -> \\\x =   x\\\\\y -> x\\\y =   //srv//share -> //srv/share \\srv\share
            a\b\..\..\c -> a\c =   C:\data\jobs\..\..\bin\ -> C:\bin\ =   C:\x\..\y -> C:\y =
            C:\..\y -> y =   ..\x -> x =   ab\..\cd\..\e -> cd\..\e =   a..\b -> ab =   ...\x -> .x =
            <ab\..\x -> x =   a>\..\x -> x =   <Root>..\x -> <Root>..\x =   <Root>\..\x -> <Root>\..\x =
            <Root\a>\..\x -> <Root\x =   <Root>\a\..\x -> <Root>\x =   \\srv\share\..\x -> \\srv\sharex =
            \\srv\share\dir\..\x -> \\srv\share\x =)")) {
        EXPECT_EQ(row[1], normalizePath(row[0])) << row[0];
        FixedWideString fixed = wide(row[0]);
        const QString expected = row[2] == q("=") ? row[1] : row[2];
        EXPECT_EQ(expected, normalizePathFixed(fixed).toQString()) << row[0];
        EXPECT_EQ(expected, fixed.toQString()) << row[0];
    }
}

TEST(Path, GoesUpOneFolderAndTakesTheFolderOfAPath)
{
    for (const QStringList &row : rowsOf(2, R"(
            C: -> C:   C:\ -> ''   C:\a -> C:\   C:\a\ -> C:\   C:\a\b -> C:\a\   abc -> ''
            a\b -> a\   a\b\c -> a\b\c   \\srv -> \\   \:abc -> \:abc\   \\srv\share\ -> \\srv\share
            \\srv\share\dir -> \\srv\share\ )")) {
        EXPECT_EQ(row[1], parentFolder(row[0], QLatin1Char('\\'))) << row[0];
        FixedWideString fixed = wide(row[0]);
        EXPECT_EQ(row[1], parentFolderFixed(fixed).toQString()) << row[0];
    }
    EXPECT_EQ(q("a\\b/"), parentFolder(q("a\\b/c"), QLatin1Char('/')));
    for (const QStringList &row : rowsOf(2, R"(
            C: -> C:   C:\m -> C:\   C:\a\b.txt -> C:\a\   C:\a\ -> C:\a\   abc -> abc\
            \\server\share -> \\server\share\   \\server\share\m -> \\server\share\
            a\b\c -> a\b\c\   a\bc -> a\bc\   C:/a/b -> C:/a/b\ )"))
        EXPECT_EQ(row[1], folderOfPath(row[0])) << row[0];
    EXPECT_EQ(3, lastBackslash(wide(q("a\\b\\c"))));
    EXPECT_EQ(-1, lastBackslash(wide(q("a/b"))));
}

TEST(Path, PutsTheLongPathPrefixInFront)
{
    QList<QStringList> rows = rowsOf(2, R"(
            C:\a -> \\?\C:\a   \\server\share\x -> \\?\UNC\server\share\x   a/b -> \\?\a/b
            \\?\C:\a -> \\?\UNC\?\C:\a)");
    rows << QStringList{ repeated(500), q("\\\\?\\") + repeated(496) };
    for (const QStringList &row : rows) {
        FixedWideString prefixed = wide(q("overwritten"));
        EXPECT_EQ(row[1], withLongPathPrefix(prefixed, wide(row[0])).toQString()) << row[0];
        EXPECT_EQ(row[1], prefixed.toQString());
    }
}

TEST(Entities, AreDecodedInOrder)
{
    for (const QStringList &row :
         rowsOf(2, "&lt;&gt;&quot;&apos;&amp; -> <>\"'&   &LT;&#65;&; -> &LT;&#65;&; "
                   "&#196;&#214;&#220;&#228;&#246;&#252;&#223; -> \xC4\xD6\xDC\xE4\xF6\xFC\xDF "
                   "&amp;lt;&amp;#196;&amp;amp; -> &lt;\xC4&amp;"))
        EXPECT_EQ(row[1], decodeEntities(row[0])) << row[0];
}

TEST(GroupedNumber, SplitsOffThreeGroupsAtMost)
{
    for (const char *text :
         { "0", "999", "1000", "1 001", "123 456", "1000 000", "1 001 000", "1 234 567 890",
           "1234 567 890 123", "-1000", "-1 500", "-9223372036 854 775 808" })
        EXPECT_EQ(q(text), formatGroupedNumber(q(text).remove(QLatin1Char(' ')).toLongLong()));
}

} // namespace
