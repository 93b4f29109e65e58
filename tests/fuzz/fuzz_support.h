// What the fuzzers share.
#pragma once

#include <QString>

#include <fuzzer/FuzzedDataProvider.h>

#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);

/// Ends the run as a finding.
inline void require(bool holds)
{
    if (!holds)
        std::abort();
}

/// Units from a small alphabet, in which separators, dots, wildcards, entities and both cases are
/// frequent, with any other unit now and then; mostly few, since long texts are slow.
inline std::u16string takeUnits(FuzzedDataProvider &data, std::size_t most)
{
    static const std::u16string frequent = u"aA\\\\\\///...*<>:bBzZ&;#19\"=- \x00E9\xD800\xFEFF";
    std::u16string text;
    most = data.ConsumeIntegral<unsigned char>() < 8 ? most : 24;
    for (auto count = data.ConsumeIntegralInRange<std::size_t>(0, most); count > 0; --count) {
        const auto byte = data.ConsumeIntegral<unsigned char>();
        text += byte < 250 ? frequent[byte % frequent.size()] : data.ConsumeIntegral<char16_t>();
    }
    return text;
}

inline QString takeText(FuzzedDataProvider &data, std::size_t most)
{
    return QString::fromStdU16String(takeUnits(data, most));
}
