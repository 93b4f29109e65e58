// The text layer. These tests also run natively, with sanitizers.
#include "text/entities.h"
#include "text/grouped_number.h"
#include "text/path.h"

#include "support/text.h"

TEST(FixedString, TruncatesAtItsCapacity)
{
    const std::string letters(600, 'x');
    EXPECT_EQ(500, wide(letters.c_str()).length);
    EXPECT_EQ(250, fixedText<FixedWideString250>(letters.c_str()).length);
    EXPECT_EQ(100, fixedText<FixedNarrowString100>(letters.c_str()).length);
    EXPECT_EQ(250, fixedText<FixedNarrowString250>(letters.c_str()).length);
    EXPECT_EQ(500, fixedText<FixedNarrowString500>(letters.c_str()).length);
    EXPECT_EQ(latin1("yx").repeated(250),
              wide(letters.c_str()).replaceAllNoCase(wide("x"), wide("yx")).toQString());
}

TEST(FixedString, InsertsAndRemovesWithinItsLength)
{
    FixedWideString text = wide("abcd");
    text.insertAt(1, wide("X"));
    text.insertAt(9, wide("Y")); // at the end
    EXPECT_EQ(latin1("aXbcdY"), text.toQString());
    text.removeRange(1, 2);
    EXPECT_EQ(latin1("acdY"), text.toQString());
    text.removeRange(2, -1); // duplicates the unit before
    EXPECT_EQ(latin1("accdY"), text.toQString());
    EXPECT_EQ(latin1("yb"), wide("Aab").replaceAllNoCase(wide("aA"), wide("y")).toQString());
}

TEST(FixedString, KeepsOldUnitsAfterItsTerminator)
{
    FixedWideString text = wide("abc");
    text.setLength(-1);
    text.setLength(700);
    EXPECT_EQ(500, text.length);
    EXPECT_EQ(u'c', text.value[2]);
    text.assignNarrow(nullptr);
    EXPECT_EQ(0, text.value[2]);
}

TEST(FixedString, EndsAtItsFirstZero)
{
    FixedWideString text;
    std::fill(std::begin(text.value), std::end(text.value), u'x');
    text.recomputeLength();
    EXPECT_EQ(0, text.value[500]);
    text.value[1] = 0;
    text.recomputeLength();
    text.value[500] = u'x';
    text.zeroTail();
    EXPECT_EQ(0, text.value[2]);
    EXPECT_EQ(0, text.value[500]);
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
    EXPECT_EQ(4, wide("aacbaabc").indexOfNoCase(wide("aabc"), 0)); // "aacb" has the same sum
    EXPECT_EQ(1, wide("bBcb").indexOfUnitNoCase(u'b', 1));
    EXPECT_EQ(0, wide("bBcb").indexOfUnitNoCase(u'B', 4)); // past the end
    EXPECT_EQ(-1, wide("a").indexOfUnitNoCase(u'\0'));     // the terminator is no unit of the text
    EXPECT_EQ(0, wide("\\a").firstBackslash());
    EXPECT_EQ(3, lastBackslash(wide("a\\b\\")));
}

TEST(FixedString, ComparesInAnyCase)
{
    EXPECT_TRUE(wide("ab").firstUnitIs(u'a'));
    EXPECT_FALSE(wide("ab").firstUnitIs(u'A')); // the exception
    EXPECT_TRUE(wide("aZc").equalsNoCase(wide("AzC")));
    EXPECT_FALSE(wide(QChar(0xE4)).equalsNoCase(wide(QChar(0xC4)))); // only a to z fold
    EXPECT_EQ(0, wide("aBc").compareNoCase(wide("AbC")));
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

TEST(TextFunctions, ReturnWhatTheirTableSays)
{
    const auto parent = [](const QString &path) { return parentFolder(path, backslash); };
    const auto fixed = [](FixedWideString (*function)(FixedWideString &)) {
        return [function](const QString &path) {
            FixedWideString text = wide(path);
            EXPECT_TRUE(function(text).equalsNoCase(text));
            return text.toQString();
        };
    };
    const auto prefixed = [](const QString &path) {
        FixedWideString destination;
        return withLongPathPrefix(destination, wide(path)).toQString();
    };
    const auto grouped = [](const QString &text) { return formatGroupedNumber(text.toLongLong()); };
    expectResults("text_functions.txt", { { "normalizePath", normalizePath },
                                          { "normalizePathFixed", fixed(normalizePathFixed) },
                                          { "parentFolder", parent },
                                          { "parentFolderFixed", fixed(parentFolderFixed) },
                                          { "folderOfPath", folderOfPath },
                                          { "withLongPathPrefix", prefixed },
                                          { "decodeEntities", decodeEntities },
                                          { "formatGroupedNumber", grouped } });
}
