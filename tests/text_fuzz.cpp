// Fixed strings, paths and entities, each against another way to the same result.
#include "text/entities.h"
#include "text/path.h"

#include "support/text.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

namespace {

const char *const pieces[] = { "a", "bc",  "\\",   "/",    "..\\",  ".",     "c:", "<",
                               ">", "lt;", "&lt;", "amp;", "&amp;", "#196;", "&",  "\xE9" };

/// A text for a fixed string. It is not empty.
QString takeText(FuzzedDataProvider &data)
{
    QString text = latin1(data.PickValueInArray(pieces));
    for (int left = data.ConsumeBool() ? 5 : data.ConsumeIntegralInRange(0, 400); left > 0; --left)
        text += latin1(data.PickValueInArray(pieces));
    return text.left(FixedWideString::capacity);
}

FixedWideString fixed(const QString &text) { return fixedText<FixedWideString>(text); }

QString replaceAll(QString text, const QString &before, const QString &after)
{
    for (int at = text.indexOf(before); at >= 0; at = text.indexOf(before, at + after.size()))
        text = text.replace(at, before.size(), after).left(FixedWideString::capacity);
    return text;
}

void checkFixedString(const QString &text, const QString &other, const QString &replacement)
{
    FixedWideString upper = fixed(other); // the pieces have small letters only
    upper.toUpper();
    EXPECT_EQ(text.indexOf(other), fixed(text).indexOfNoCase(upper, 0));
    EXPECT_EQ(replaceAll(text, other, replacement),
              fixed(text).replaceAllNoCase(upper, fixed(replacement)).toQString());
}

void checkPaths(FixedWideString text)
{
    const QString path = text.toBackslashes().toQString();
    FixedWideString other = text;
    EXPECT_EQ(parentFolder(path, backslash), parentFolderFixed(other).toQString());
    EXPECT_EQ(normalizePath(path), normalizePathFixed(text).toQString());
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const QString text = takeText(data);
    SCOPED_TRACE(plain(text));
    checkFixedString(text, takeText(data), takeText(data));
    checkPaths(fixed(text).left(FixedWideString::capacity - 1)); // with room for a backslash
    // "&amp;" is decoded after the names and before the numbers.
    QString decoded = text;
    decoded.replace(latin1("&amp;#196;"), latin1("\xC4")).replace(latin1("&#196;"), latin1("\xC4"));
    decoded.replace(latin1("&lt;"), latin1("<")).replace(latin1("&amp;"), latin1("&"));
    EXPECT_EQ(decoded, decodeEntities(text));
    if (testing::Test::HasFailure())
        std::abort();
    return 0;
}
