// Fixed strings against std::u16string, both kinds of path text against each other, and entities
// against a reference.
#include "text/entities.h"
#include "text/path.h"

#include "support/text.h"

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

namespace {

using Plain = std::u16string;

/// A text for a fixed string, made of what paths and entities consist of. It is not empty.
Plain takeText(FuzzedDataProvider &data)
{
    const Plain pieces[] = { u"a", u"bc",  u"\\",   u"/",    u"..\\",  u".",     u"C:", u"<",
                             u">", u"lt;", u"&lt;", u"amp;", u"&amp;", u"#196;", u"&",  u"\xE9" };
    Plain text = data.PickValueInArray(pieces);
    for (int left = data.ConsumeBool() ? 5 : data.ConsumeIntegralInRange(0, 400); left > 0; --left)
        text += data.PickValueInArray(pieces);
    return text.substr(0, FixedWideString::capacity);
}

FixedWideString fixed(const Plain &text)
{
    FixedWideString result;
    result.appendUnits(text.data(), static_cast<qint32>(text.size()));
    return result;
}

Plain plain(const FixedWideString &text) { return Plain(text.value, text.length); }

Plain replaceAll(Plain text, const Plain &searched, const Plain &replacement)
{
    for (std::size_t at = text.find(searched); at != Plain::npos;
         at = text.find(searched, at + replacement.size()))
        text = text.replace(at, searched.size(), replacement).substr(0, FixedWideString::capacity);
    return text;
}

void checkFixedString(const Plain &text, const Plain &other, const Plain &replacement)
{
    const auto found = static_cast<qint32>(text.find(other)); // -1 for npos
    FixedWideString upper = fixed(other);                     // texts have small letters only
    upper.toUpper();
    EXPECT_EQ(found, fixed(text).indexOfNoCase(upper, 0));
    EXPECT_EQ(found == 0, fixed(text).startsWithNoCase(upper));
    FixedWideString edited = fixed(text).replaceAllNoCase(upper, fixed(replacement));
    EXPECT_EQ(replaceAll(text, other, replacement), plain(edited));
    edited = fixed(text);
    edited.insertAt(1, fixed(other));
    EXPECT_EQ(Plain(text).insert(1, other).substr(0, FixedWideString::capacity), plain(edited));
    edited = fixed(text);
    edited.removeRange(1, 3);
    EXPECT_EQ(Plain(text).erase(1, 3), plain(edited));
}

void checkPaths(const QString &path)
{
    // After the server of a network path a search starts past the end. A fixed string starts at 0.
    const bool endsWithServer = path.mid(1, 1) == QString(backslash)
                                && path.indexOf(backslash, path.indexOf(backslash, 2) + 1) < 0;
    if (endsWithServer || path.size() == FixedWideString::capacity)
        return;
    auto text = fixedText<FixedWideString>(path);
    EXPECT_EQ(parentFolder(path, backslash), parentFolderFixed(text).toQString());
    text = fixedText<FixedWideString>(path);
    EXPECT_EQ(normalizePath(path), normalizePathFixed(text).toQString());
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    const Plain text = takeText(data);
    SCOPED_TRACE(testing::PrintToString(text));
    checkFixedString(text, takeText(data), takeText(data));
    checkPaths(toBackslashPath(fixed(text).toQString()));
    // An "&" that comes from its own entity begins a number, but no name.
    Plain decoded = replaceAll(text, u"&amp;#196;", u"\xC4");
    decoded = replaceAll(replaceAll(decoded, u"&#196;", u"\xC4"), u"&lt;", u"<");
    EXPECT_EQ(fixed(replaceAll(decoded, u"&amp;", u"&")).toQString(),
              decodeEntities(fixed(text).toQString()));
    if (testing::Test::HasFailure())
        std::abort();
    return 0;
}
