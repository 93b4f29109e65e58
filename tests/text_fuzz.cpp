// Fixed strings, paths and entities, each against another way to the same result.
#include "text/entities.h"
#include "text/path.h"

#include "support/text.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

namespace {

using Plain = std::u16string;

const Plain pieces[] = { u"a", u"bc",  u"\\",   u"/",    u"..\\",  u".",     u"c:", u"<",
                         u">", u"lt;", u"&lt;", u"amp;", u"&amp;", u"#196;", u"&",  u"\xE9" };

/// A text for a fixed string. It is not empty.
Plain takeText(FuzzedDataProvider &data)
{
    Plain text = data.PickValueInArray(pieces);
    for (int left = data.ConsumeBool() ? 5 : data.ConsumeIntegralInRange(0, 400); left > 0; --left)
        text += data.PickValueInArray(pieces);
    return text.substr(0, FixedWideString::capacity);
}

FixedWideString fixed(const Plain &text)
{
    return fixedText<FixedWideString>(QString::fromStdU16String(text));
}

Plain replaceAll(Plain text, const Plain &searched, const Plain &replacement)
{
    for (std::size_t at = text.find(searched); at != Plain::npos;
         at = text.find(searched, at + replacement.size()))
        text = text.replace(at, searched.size(), replacement).substr(0, FixedWideString::capacity);
    return text;
}

void checkFixedString(const Plain &text, const Plain &other, const Plain &replacement)
{
    FixedWideString upper = fixed(other); // the pieces have small letters only
    upper.toUpper();
    const auto found = static_cast<qint32>(text.find(other)); // -1 for npos
    EXPECT_EQ(found, fixed(text).indexOfNoCase(upper, 0));
    EXPECT_EQ(fixed(replaceAll(text, other, replacement)).toQString(),
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
    const Plain text = takeText(data);
    SCOPED_TRACE(testing::PrintToString(text));
    checkFixedString(text, takeText(data), takeText(data));
    checkPaths(fixed(text).left(FixedWideString::capacity - 1)); // with room for a backslash
    // "&amp;" is decoded after the names and before the numbers.
    Plain decoded = replaceAll(text, u"&amp;#196;", u"\xC4");
    decoded = replaceAll(replaceAll(decoded, u"&#196;", u"\xC4"), u"&lt;", u"<");
    decoded = replaceAll(decoded, u"&amp;", u"&");
    EXPECT_EQ(fixed(decoded).toQString(), decodeEntities(fixed(text).toQString()));
    if (testing::Test::HasFailure())
        std::abort();
    return 0;
}
