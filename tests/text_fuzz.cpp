// Searching and replacing in fixed strings, against QString's.
#include "text/fixed_string.h"

#include "support/text.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    constexpr const char *pieces[] = { "a", "bc", "b", "\\", "\\\\", "..", "xyz", "\xE9" };
    QString texts[3]; // each byte appends a piece to one of them
    for (std::size_t i = 0; i < size; ++i)
        texts[bytes[i] / 8 % 3] += latin1(pieces[bytes[i] % 8]);
    const auto &[text, other, replacement] = texts;
    if (other.isEmpty() || 3 * size > FixedWideString::capacity)
        return 0; // only a QString finds nothing, or has room for more
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
    if (testing::Test::HasFailure())
        std::abort();
    return 0;
}
