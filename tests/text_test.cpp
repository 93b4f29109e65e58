// The text layer. These tests also run natively, with sanitizers.
#include "text/entities.h"
#include "text/grouped_number.h"
#include "text/path.h"

#include "support/text.h"

namespace {

FixedWideString wide(const QString &text) { return fixedText<FixedWideString>(text); }
FixedWideString wide(const char *text) { return fixedText<FixedWideString>(text); }

TEST(FixedString, TruncatesAtItsCapacity)
{
    const QByteArray bytes(600, 'x');
    EXPECT_EQ(repeated(500), fixedText<FixedWideString>(bytes.constData()).toQString());
    EXPECT_EQ(repeated(250), fixedText<FixedWideString250>(bytes.constData()).toQString());
    EXPECT_EQ(repeated(100), fixedText<FixedNarrowString100>(bytes.constData()).toQString());
    EXPECT_EQ(repeated(250), fixedText<FixedNarrowString250>(bytes.constData()).toQString());
    EXPECT_EQ(repeated(500), fixedText<FixedNarrowString500>(bytes.constData()).toQString());
}

TEST(FixedString, InsertsAndRemovesWithinItsLength)
{
    FixedWideString text = wide("abcd");
    text.insertAt(1, wide("X"));
    EXPECT_EQ(latin1("aXbcd"), text.toQString());
    text.insertAt(9, wide("Y")); // at the end
    EXPECT_EQ(latin1("aXbcdY"), text.toQString());
    text.removeRange(1, 2);
    EXPECT_EQ(latin1("acdY"), text.toQString());
    text.removeRange(2, -1); // duplicates the unit before
    EXPECT_EQ(latin1("accdY"), text.toQString());
}

TEST(FixedString, LeavesUnitsAfterItsTerminator)
{
    FixedWideString text = wide("abc");
    text.setLength(-1);
    EXPECT_EQ(0, text.length);
    text.setLength(700);
    EXPECT_EQ(500, text.length);
    EXPECT_EQ(u'c', text.value[2]);
    text.recomputeLength();
    EXPECT_EQ(0, text.length);
    text.zeroTail();
    EXPECT_EQ(0, text.value[2]);
    std::fill(std::begin(text.value), std::end(text.value), u'x');
    text.recomputeLength(); // there is no terminator
    EXPECT_EQ(0, text.value[500]);
    text.assignNarrow(nullptr);
    EXPECT_EQ(0, text.value[499]);
}

TEST(FixedString, ConvertsUnitByUnit)
{
    EXPECT_EQ(0xFFE9, wide("\xE9").value[0]);                           // a byte with its sign
    EXPECT_EQ(QString(QChar(0xFEFF)), wide(QChar(0xFEFF)).toQString()); // no byte order mark
}

TEST(FixedString, FindsInAnyCase)
{
    EXPECT_EQ(0, wide("ABC").indexOfNoCase(wide("abc"), 0));
    EXPECT_EQ(-1, wide("ABC").indexOfNoCase(wide(""), 0));
    EXPECT_EQ(-1, wide("ABC").indexOfNoCase(wide("bc"), 2));
    EXPECT_EQ(1, wide("aab").indexOfNoCase(wide("ab"), -7));
    EXPECT_EQ(2, wide("adbcbc").indexOfNoCase(wide("bc"), 0)); // "ad" has the same sum of units
    EXPECT_EQ(3, wide("aBcb").indexOfUnitNoCase(u'B', 2));
    EXPECT_EQ(1, wide("aBcb").indexOfUnitNoCase(u'b', 4)); // past the end
    EXPECT_EQ(3, lastBackslash(wide("a\\b\\c")));
    EXPECT_EQ(-1, lastBackslash(wide("a/b")));
}

TEST(FixedString, ComparesInAnyCase)
{
    EXPECT_TRUE(wide("ab").firstUnitIs(u'a'));
    EXPECT_FALSE(wide("ab").firstUnitIs(u'A')); // the exception
    EXPECT_TRUE(wide("aBc").equalsNoCase(wide("AbC")));
    EXPECT_FALSE(wide("aBc").equalsNoCase(wide("abd")));
    EXPECT_EQ(0, wide("aBc").compareNoCase(wide("AbC")));
    EXPECT_TRUE(wide("xyZ").endsWithNoCase(wide("Yz")));
    EXPECT_EQ(-1, wide("abc").compareNoCase(wide("ABCD")));
    EXPECT_EQ(1, wide("z1").compareNoCase(wide("Z")));
    // By the bytes in memory: U+0102 is 02 01 there, U+0201 is 01 02.
    EXPECT_GT(wide(QChar(0x0102)).compareNoCase(wide(QChar(0x0201))), 0);
    FixedWideString prefix = wide("xy");
    EXPECT_FALSE(wide("a").startsWithNoCase(prefix));
    EXPECT_EQ(latin1("xy"), prefix.toQString()); // too long to be looked at
    EXPECT_TRUE(wide("Xyz").startsWithNoCase(prefix));
    EXPECT_EQ(latin1("XY"), prefix.toQString()); // in upper case now
}

TEST(NormalizePath, CollapsesSeparatorsAndFoldsTheFirstParents)
{
    const std::initializer_list<TextRow> rows = {
        { "three separators", R"(x\\\y)", R"(x\\y)" },
        { "four separators at the start", R"(\\\\x)", R"(\\\x)" },
        { "the parent of a drive", R"(C:\..\y)", "y" },
        { "a second group of parents", R"(ab\..\cd\..\e)", R"(cd\..\e)" },
        { "three dots", R"(...\x)", ".x" },
        { "a placeholder", R"(<Root>\..\x)", R"(<Root>\..\x)" },
        { "a placeholder without separator", R"(<Root>..\x)", R"(<Root>..\x)" },
        { "a separator within the brackets", R"(<Root\a>\..\x)", R"(<Root\x)" },
        { "only the left bracket", R"(<ab\..\x)", "x" },
        { "only the right bracket", R"(a>\..\x)", "x" },
        { "the parent of a share", R"(\\srv\share\..\x)", R"(\\srv\sharex)" },
        { "the parent of its folder", R"(\\srv\share\dir\..\x)", R"(\\srv\share\x)" },
    };
    const auto normalizedFixed = [](const QString &path) {
        FixedWideString fixed = wide(path);
        return normalizePathFixed(fixed).toQString();
    };
    expectResults(rows, normalizePath);
    expectResults(rows, normalizedFixed);
    // Only a fixed string gets its slashes converted, unless it is too short.
    EXPECT_EQ(latin1("C:/a/c"), normalizePath(latin1("C:/a//b/../c")));
    EXPECT_EQ(latin1("C:\\a/b//c"), normalizePath(latin1("C:\\a/b//c")));
    EXPECT_EQ(latin1("C:\\a\\"), normalizedFixed(latin1("C:/a\\b//../")));
    EXPECT_EQ(latin1("/"), normalizedFixed(latin1("/")));
}

TEST(ParentFolder, GoesUpOneFolder)
{
    const std::initializer_list<TextRow> rows = {
        { "two units", "C:", "C:" },
        { "a drive", R"(C:\)", "" },
        { "a file in a folder of one letter", R"(a\b)", R"(a\)" },
        { "what looks like a server and no share", R"(a\b\c)", R"(a\b\c)" },
        { "a server", R"(\\srv)", R"(\\)" },
        { "a name after the only backslash", R"(\:abc)", R"(\:abc\)" },
        { "a share", R"(\\srv\share\)", R"(\\srv\share)" },
    };
    expectResults(rows, [](const QString &path) { return parentFolder(path, backslash); });
    expectResults(rows, [](const QString &path) {
        FixedWideString fixed = wide(path);
        return parentFolderFixed(fixed).toQString();
    });
}

TEST(FolderOfPath, KeepsABareShareWhole)
{
    expectResults({ { "two units", "C:", "C:" },
                    { "a file of a drive", R"(C:\m)", R"(C:\)" },
                    { "a trailing backslash", R"(C:\a\)", R"(C:\a\)" },
                    { "a name", "abc", R"(abc\)" },
                    { "a backslash as second unit", R"(a\bc)", R"(a\bc\)" },
                    { "a share", R"(\\server\share)", R"(\\server\share\)" },
                    { "a file of a share", R"(\\server\share\m)", R"(\\server\share\)" } },
                  folderOfPath);
}

TEST(LongPathPrefix, IsAddedToAnyPath)
{
    const auto prefixed = [](const QString &path) {
        FixedWideString destination;
        return withLongPathPrefix(destination, wide(path)).toQString();
    };
    EXPECT_EQ(latin1("\\\\?\\UNC\\server\\share"), prefixed(latin1("\\\\server\\share")));
    EXPECT_EQ(latin1("\\\\?\\UNC\\?\\C:\\a"), prefixed(latin1("\\\\?\\C:\\a")));
    EXPECT_EQ(latin1("\\\\?\\") + repeated(496), prefixed(repeated(500)));
}

TEST(Entities, AreDecodedInOrder)
{
    expectResults({ { "names", "&lt;&gt;&quot;&apos;&amp;", "<>\"'&" },
                    { "numbers", "&#196;&#214;&#220;&#228;&#246;&#252;&#223;",
                      "\xC4\xD6\xDC\xE4\xF6\xFC\xDF" },
                    { "unknown ones", "&LT;&#65;&;", "&LT;&#65;&;" },
                    { "numbers last", "&amp;lt;&amp;#196;&amp;amp;", "&lt;\xC4&amp;" } },
                  decodeEntities);
}

TEST(GroupedNumber, HasFourGroupsAtMost)
{
    const auto grouped = [](qint64 number) { return formatGroupedNumber(number).toStdString(); };
    EXPECT_EQ("1000", grouped(1000));
    EXPECT_EQ("1 001", grouped(1001));
    EXPECT_EQ("1000 000", grouped(1000000));
    EXPECT_EQ("1234 567 890 123", grouped(1234567890123));
    EXPECT_EQ("-1 500", grouped(-1500));
    EXPECT_EQ("-9223372036 854 775 808", grouped(std::numeric_limits<qint64>::min()));
}

} // namespace
