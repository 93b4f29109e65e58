// A random sequence of operations on a fixed string and on a plain reference.
#include "text/fixed_string.h"

#include "fuzz_support.h"

#include <algorithm>

namespace {

using Fixed = FixedWideString;
using Plain = std::u16string;

Plain plain(const Fixed &text) { return Plain(text.value, text.length); }

void cut(Plain &text) { text.resize(std::min<std::size_t>(text.size(), Fixed::capacity)); }

Plain upper(Plain text)
{
    for (char16_t &unit : text)
        if (unit >= 'a' && unit <= 'z')
            unit = static_cast<char16_t>(unit - 32);
    return text;
}

/// The units as bytes, the lower one first, so that texts have the order of memory.
std::string bytesOf(const Plain &text)
{
    std::string bytes;
    for (const char16_t unit : text)
        (bytes += static_cast<char>(unit & 0xFF)) += static_cast<char>(unit >> 8);
    return bytes;
}

int signOf(int number) { return number < 0 ? -1 : static_cast<int>(number > 0); }

int indexOf(const Plain &text, const Plain &searched, int from)
{
    const std::size_t found =
        searched.empty() ? Plain::npos
                         : upper(text).find(upper(searched), static_cast<std::size_t>(from));
    return found == Plain::npos ? -1 : static_cast<int>(found);
}

struct Pair
{
    Fixed fixed;
    Plain reference;
};

/// Both kinds of a text of up to 20 units more than fit.
Pair takePair(FuzzedDataProvider &data)
{
    Pair pair = { Fixed(), takeUnits(data, Fixed::capacity + 20) };
    pair.fixed.appendUnits(pair.reference.data(), static_cast<qint32>(pair.reference.size()));
    cut(pair.reference);
    return pair;
}

void edit(FuzzedDataProvider &data, Pair &pair)
{
    auto &[fixed, reference] = pair;
    const auto size = static_cast<qint32>(reference.size());
    const Pair other = takePair(data);
    const Pair another = takePair(data);
    const auto position = data.ConsumeIntegralInRange<qint32>(-5, Fixed::capacity + 5);
    const qint32 count = data.ConsumeBool() ? data.ConsumeIntegralInRange<qint32>(0, 9)
                                            : data.ConsumeIntegral<qint32>();
    const auto head = static_cast<std::size_t>(qBound(0, position, size));
    const auto rest = static_cast<std::size_t>(qBound<qint64>(0, qint64(position) + count, size));
    switch (data.ConsumeIntegralInRange(0, 3)) {
    case 0:
        fixed.appendUnits(other.fixed.value, other.fixed.length);
        reference += other.reference;
        break;
    case 1:
        fixed.insertAt(position, other.fixed);
        reference.insert(head, other.reference);
        break;
    case 2:
        fixed.removeRange(position, count);
        reference = reference.substr(0, head) + reference.substr(rest);
        break;
    default:
        fixed.replaceAllNoCase(other.fixed, another.fixed);
        for (int at = 0; (at = indexOf(reference, other.reference, at)) >= 0;
             at += static_cast<int>(another.reference.size())) {
            reference.replace(static_cast<std::size_t>(at), other.reference.size(),
                              another.reference);
            cut(reference);
            at = std::min(at, static_cast<int>(reference.size()));
        }
        break;
    }
    cut(reference);
}

void ask(FuzzedDataProvider &data, const Pair &pair)
{
    const auto &[fixed, reference] = pair;
    const Pair other = takePair(data);
    const auto from = data.ConsumeIntegralInRange<qint32>(-3, Fixed::capacity + 3);
    const auto size = static_cast<qint32>(reference.size());
    const Plain text = upper(reference);
    const Plain searched = upper(other.reference);
    const bool fits = !searched.empty() && searched.size() <= text.size();

    Fixed prefix = other.fixed;
    require(fixed.startsWithNoCase(prefix) == (fits && text.find(searched) == 0));
    require(plain(prefix) == (fits ? searched : other.reference));
    require(fixed.endsWithNoCase(other.fixed)
            == (fits && text.substr(text.size() - searched.size()) == searched));
    require(fixed.equalsNoCase(other.fixed) == (text == searched));
    require(signOf(fixed.compareNoCase(other.fixed))
            == signOf(bytesOf(text).compare(bytesOf(searched))));
    require(fixed.indexOfNoCase(other.fixed, from)
            == indexOf(reference, other.reference, std::max(from, 0)));
    if (!searched.empty())
        require(fixed.indexOfUnitNoCase(other.reference[0], from)
                == indexOf(reference, searched.substr(0, 1), from >= 1 && from < size ? from : 0));
}

} // namespace

int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    Pair pair;
    while (data.remaining_bytes() > 0) {
        edit(data, pair);
        require(pair.fixed.length <= Fixed::capacity);
        require(pair.fixed.value[pair.fixed.length] == 0);
        require(plain(pair.fixed) == pair.reference);
        ask(data, pair);
    }
    return 0;
}
