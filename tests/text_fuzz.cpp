// Fixed strings and entities, each against another way to the same result.
#include "text/entities.h"
#include "text/fixed_string.h"

#include "support/text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

namespace {

const char *const pieces[] = { "a", "bc",  "\\",   "/",    "..\\",  ".",     "c:", "<",
                               ">", "lt;", "&lt;", "amp;", "&amp;", "#196;", "&",  "\xE9" };

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    QString texts[3]; // each byte appends a piece to one of them
    for (std::size_t i = 0; i < size; ++i)
        texts[bytes[i] / 16 % 3] += latin1(pieces[bytes[i] % 16]);
    const QString text = texts[0].left(FixedWideString::capacity);
    const QString other = texts[1].left(FixedWideString::capacity);
    const QString replacement = texts[2].left(FixedWideString::capacity);
    if (other.isEmpty())
        return 0; // only a QString finds it
    SCOPED_TRACE(plain(text));

    FixedWideString upper = wide(other); // the pieces have small letters only
    upper.toUpper();
    EXPECT_EQ(text.indexOf(other), wide(text).indexOfNoCase(upper, 0));
    QString replaced = text;
    replaced.replace(other, replacement);
    const FixedWideString result = wide(text).replaceAllNoCase(upper, wide(replacement));
    if (replaced.size() <= FixedWideString::capacity) {
        EXPECT_EQ(replaced, result.toQString());
    }

    // "&amp;" is decoded after the names and before the numbers.
    QString decoded = text;
    decoded.replace(latin1("&amp;#196;"), latin1("\xC4")).replace(latin1("&#196;"), latin1("\xC4"));
    decoded.replace(latin1("&lt;"), latin1("<")).replace(latin1("&amp;"), latin1("&"));
    EXPECT_EQ(decoded, decodeEntities(text));
    if (testing::Test::HasFailure())
        std::abort();
    return 0;
}
