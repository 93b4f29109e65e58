// A random sequence of operations on a fixed string and on a plain reference.
#include "text/fixed_string.h"

#include "fuzz_support.h"

namespace {

template <typename Fixed>
using Plain = std::basic_string<std::remove_reference_t<decltype(Fixed().value[0])>>;

template <typename Fixed>
Plain<Fixed> plain(const Fixed &text)
{
    return Plain<Fixed>(text.value, text.length);
}

template <typename Text>
Text upper(Text text)
{
    for (auto &unit : text)
        if (unit >= 'a' && unit <= 'z')
            unit = static_cast<typename Text::value_type>(unit - 32);
    return text;
}

template <typename Text>
std::string bytesOf(const Text &text)
{
    return std::string(reinterpret_cast<const char *>(text.data()),
                       text.size() * sizeof(typename Text::value_type));
}

int signOf(qint64 number) { return number < 0 ? -1 : static_cast<int>(number > 0); }

template <typename Text>
int compare(const Text &left, const Text &right)
{
    const std::size_t common = std::min(left.size(), right.size());
    const int order =
        bytesOf(upper(left.substr(0, common))).compare(bytesOf(upper(right.substr(0, common))));
    return signOf(order != 0 ? order : qint64(left.size()) - qint64(right.size()));
}

template <typename Text>
int indexOf(const Text &text, const Text &searched, int from)
{
    if (searched.empty())
        return -1;
    const std::size_t found =
        upper(text).find(upper(searched), static_cast<std::size_t>(std::max(from, 0)));
    return found == Text::npos ? -1 : static_cast<int>(found);
}

template <typename Fixed>
struct Pair
{
    Fixed fixed;
    Plain<Fixed> reference;
};

/// Both kinds of a text of up to 20 units more than fit.
template <typename Fixed>
Pair<Fixed> takePair(FuzzedDataProvider &data)
{
    Pair<Fixed> pair;
    for (const char16_t unit : takeUnits(data, Fixed::capacity + 20))
        pair.reference += static_cast<typename Plain<Fixed>::value_type>(unit);
    pair.fixed.appendUnits(pair.reference.data(), static_cast<qint32>(pair.reference.size()));
    pair.reference.resize(std::min<std::size_t>(pair.reference.size(), Fixed::capacity));
    return pair;
}

template <typename Fixed>
void edit(FuzzedDataProvider &data, Pair<Fixed> &pair)
{
    Fixed &fixed = pair.fixed;
    Plain<Fixed> &reference = pair.reference;
    const auto size = static_cast<qint32>(reference.size());
    const Pair<Fixed> other = takePair<Fixed>(data);
    const auto position = data.ConsumeIntegralInRange<qint32>(-5, Fixed::capacity + 5);
    const auto count = data.ConsumeBool() ? data.ConsumeIntegralInRange<qint32>(0, 9)
                                          : data.ConsumeIntegral<qint32>();
    const auto head = static_cast<std::size_t>(qBound(0, position, size));
    switch (data.ConsumeIntegralInRange(0, 9)) {
    case 0:
        fixed.clear();
        reference.clear();
        break;
    case 1: {
        const std::string bytes = data.ConsumeRandomLengthString(Fixed::capacity + 20);
        fixed.assignNarrow(bytes.c_str());
        reference.clear();
        for (const char *byte = bytes.c_str(); *byte != '\0'; ++byte)
            reference +=
                static_cast<typename Plain<Fixed>::value_type>(static_cast<signed char>(*byte));
        break;
    }
    case 2:
        fixed.setLength(static_cast<qint16>(position));
        require(fixed.length == qBound(0, position, Fixed::capacity));
        if (position > size)
            fixed.recomputeLength(); // no rule says what stands behind the old terminator
        reference = position > size ? plain(fixed) : reference.substr(0, head);
        break;
    case 3:
        fixed.assign(fixed.left(position));
        reference.resize(head);
        break;
    case 4:
        fixed.appendUnits(other.fixed.value, other.fixed.length);
        reference += other.reference;
        break;
    case 5:
        fixed.insertAt(position, other.fixed);
        reference.insert(head, other.reference);
        break;
    case 6: {
        const qint64 rest = qBound<qint64>(0, qint64(position) + count, size);
        fixed.removeRange(position, count);
        reference = reference.substr(0, head) + reference.substr(static_cast<std::size_t>(rest));
        break;
    }
    case 7: {
        const Pair<Fixed> replacement = takePair<Fixed>(data);
        fixed.replaceAllNoCase(other.fixed, replacement.fixed);
        int found = indexOf(reference, other.reference, 0);
        while (found >= 0) {
            reference.replace(static_cast<std::size_t>(found), other.reference.size(),
                              replacement.reference);
            reference.resize(std::min<std::size_t>(reference.size(), Fixed::capacity));
            found = indexOf(reference, other.reference,
                            found + static_cast<int>(replacement.reference.size()));
        }
        break;
    }
    case 8:
        fixed.toUpper();
        reference = upper(reference);
        break;
    default:
        fixed.toBackslashes();
        std::replace(reference.begin(), reference.end(), typename Plain<Fixed>::value_type('/'),
                     typename Plain<Fixed>::value_type('\\'));
        break;
    }
    reference.resize(std::min<std::size_t>(reference.size(), Fixed::capacity));
}

template <typename Fixed>
void ask(FuzzedDataProvider &data, const Pair<Fixed> &pair)
{
    const Fixed &fixed = pair.fixed;
    const Plain<Fixed> &reference = pair.reference;
    const Pair<Fixed> other = takePair<Fixed>(data);
    const auto from = data.ConsumeIntegralInRange<qint32>(-3, Fixed::capacity + 3);
    const bool fits = !other.reference.empty() && other.reference.size() <= reference.size();

    Fixed prefix = other.fixed;
    const std::size_t common = fits ? other.reference.size() : 0;
    require(fixed.startsWithNoCase(prefix)
            == (fits && upper(reference.substr(0, common)) == upper(other.reference)));
    require(plain(prefix) == (fits ? upper(other.reference) : other.reference));
    require(
        fixed.endsWithNoCase(other.fixed)
        == (fits && upper(reference.substr(reference.size() - common)) == upper(other.reference)));
    require(signOf(fixed.compareNoCase(other.fixed)) == compare(reference, other.reference));
    require(fixed.equalsNoCase(other.fixed) == (upper(reference) == upper(other.reference)));
    require(fixed.indexOfNoCase(other.fixed, from) == indexOf(reference, other.reference, from));
    if (!other.reference.empty()) {
        const bool inside = from >= 1 && from < static_cast<qint32>(reference.size());
        require(fixed.indexOfUnitNoCase(other.reference[0], from)
                == indexOf(reference, other.reference.substr(0, 1), inside ? from : 0));
    }
}

template <typename Fixed>
void run(FuzzedDataProvider &data)
{
    Pair<Fixed> pair;
    while (data.remaining_bytes() > 0) {
        edit(data, pair);
        require(pair.fixed.length <= Fixed::capacity);
        require(pair.fixed.value[pair.fixed.length] == 0);
        require(plain(pair.fixed) == pair.reference);
        ask(data, pair);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);
int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    if (data.ConsumeBool())
        run<FixedWideString>(data);
    else
        run<FixedNarrowString100>(data);
    return 0;
}
