// Strings of fixed capacity without heap memory, which carry paths to Windows and messages from it.
//
// Rules that all operations share: positions and counts are in units (UTF-16 code units, or bytes
// in the narrow variants). Text beyond the capacity is silently truncated. value[length] is always
// 0. Units after that terminator mean nothing. clear, assignNarrow, zeroTail, insertAt, removeRange
// and each replacement of replaceAllNoCase set them to 0; assign copies them, and the other
// operations leave them. Case-insensitive operations fold a to z only.
//
// A frozen interface of the suite's tools, see CONTRIBUTING.md, except toQString, lastIndexOfUnit,
// addTrailingBackslash, and the functions and constants outside of the struct.
#pragma once

#include <QString>

#include <algorithm>
#include <cstddef>
#include <cstring>

constexpr char backslashUnit = '\\';
constexpr char slashUnit = '/';

/// The unit with a to z turned into A to Z, like the C run-time's toupper in its default locale.
template <typename Unit>
constexpr Unit upperCaseUnit(Unit unit)
{
    return unit >= Unit('a') && unit <= Unit('z') ? static_cast<Unit>(unit - ('a' - 'A')) : unit;
}

/// Whether two runs of `count` units are equal, case-insensitive.
template <typename Unit>
bool sameUnitsNoCase(const Unit *left, const Unit *right, qint32 count)
{
    return std::equal(left, left + count, right,
                      [](Unit a, Unit b) { return upperCaseUnit(a) == upperCaseUnit(b); });
}

/// A plain value of at most `Capacity` units; Unit is char16_t (wide) or char (narrow).
template <typename Unit, qint32 Capacity>
struct FixedString
{
    static_assert(sizeof(Unit) <= 2 && Capacity > 0 && Capacity < 32767, "length is 16 bits wide");

    static constexpr qint32 capacity = Capacity;
    static constexpr bool isWide = sizeof(Unit) == 2;

    quint16 length = 0;
    Unit value[static_cast<std::size_t>(Capacity) + 1] = {};

    /// Empties the string and sets all of its units to 0.
    void clear()
    {
        length = 0;
        zeroTail();
    }

    /// Takes a zero-terminated 8-bit text; null clears. Bytes are widened with their sign, so 0xE9
    /// becomes the unit 0xFFE9 in a wide string (frozen: no code page is used).
    void assignNarrow(const char *text)
    {
        length = 0;
        while (text != nullptr && length < Capacity && text[length] != '\0') {
            value[length] = static_cast<Unit>(static_cast<signed char>(text[length]));
            ++length;
        }
        zeroTail();
    }

    /// Sets every unit from the terminator to the end of the array to 0.
    void zeroTail() { std::fill(value + length, value + Capacity + 1, Unit(0)); }

    /// Copies length and all units, also those after the terminator.
    void assign(const FixedString &other) { *this = other; }

    /// Takes the first units of a QString, at most the capacity (wide strings only).
    void assignQString(const QString &text)
    {
        static_assert(isWide, "a narrow string takes Latin-1 bytes");
        setLength(0);
        appendUnits(reinterpret_cast<const Unit *>(text.constData()), text.size());
    }

    /// Takes the first Latin-1 bytes of a QString, at most the capacity (narrow strings only).
    void assignLatin1(const QString &text)
    {
        static_assert(!isWide, "a wide string takes the units of a QString");
        const QByteArray bytes = text.toLatin1();
        setLength(0);
        appendUnits(bytes.constData(), bytes.size());
    }

    /// A QString of exactly `length` characters. Narrow text is read as Latin-1.
    QString toQString() const
    {
        // Not QString::fromUtf16, which would drop a leading U+FEFF.
        if constexpr (isWide)
            return QString(reinterpret_cast<const QChar *>(value), length);
        else
            return QString::fromLatin1(value, length);
    }

    /// Sets the length, limited to the range from 0 to the capacity, and the terminator. Nothing
    /// else changes, so growing exposes the units after the old terminator.
    void setLength(qint16 newLength)
    {
        length = static_cast<quint16>(qBound<qint32>(0, newLength, Capacity));
        value[length] = Unit(0);
    }

    /// Sets the length to the position of the first 0 unit. Without one, sets it to the capacity
    /// and puts the 0 there. Frozen: not called here.
    void recomputeLength()
    {
        const Unit *terminator = std::find(value, value + Capacity, Unit(0));
        setLength(static_cast<qint16>(terminator - value));
    }

    /// The first `count` units; fewer when the string is shorter, none for a negative count.
    FixedString left(qint32 count) const
    {
        FixedString result;
        result.appendUnits(value, qMin<qint32>(length, count));
        return result;
    }

    /// Appends `count` units, as many as fit. Nothing for null or a count of 0 or less.
    void appendUnits(const Unit *units, qint32 count)
    {
        if (units == nullptr || count <= 0)
            return;
        const qint32 fitting = qMin<qint32>(count, Capacity - length);
        std::memmove(value + length, units, static_cast<std::size_t>(fitting) * sizeof(Unit));
        setLength(static_cast<qint16>(length + fitting));
    }

    /// Appends a backslash when the last unit is not one and there is room. A slash does not count.
    void addTrailingBackslash()
    {
        const Unit unit = backslashUnit;
        if (!endsWithBackslash())
            appendUnits(&unit, 1);
    }

    /// Inserts `text` before the unit at `position` (0 when negative, the end when past it).
    void insertAt(const qint32 &position, const FixedString &text);

    /// Removes up to `count` units at `position`. A negative count duplicates the units before it.
    void removeRange(const qint32 &position, const qint32 &count);

    /// Replaces every `find`, case-insensitive, in one pass from the left. Each search starts after
    /// the inserted text, so replacing "\\" by "\" turns three backslashes into two. Neither
    /// operand may be this string.
    FixedString &replaceAllNoCase(const FixedString &find, const FixedString &replacement);

    /// Turns a to z into A to Z in place.
    void toUpper() { std::transform(value, value + length, value, upperCaseUnit<Unit>); }

    /// Turns every slash into a backslash in place.
    FixedString &toBackslashes()
    {
        std::replace(value, value + length, Unit(slashUnit), Unit(backslashUnit));
        return *this;
    }

    bool isEmpty() const { return length == 0; }

    /// Whether the first unit is exactly `unit`; false when empty. Frozen: not called here.
    bool firstUnitIs(Unit unit) const { return !isEmpty() && value[0] == unit; }

    /// Whether the last unit is a backslash; false when empty.
    bool endsWithBackslash() const { return !isEmpty() && value[length - 1] == backslashUnit; }

    /// Position of the first backslash, or -1.
    qint32 firstBackslash() const { return indexOfUnitNoCase(backslashUnit); }

    /// Whether the string begins with `prefix`, case-insensitive; false when either is empty.
    /// Frozen: leaves a prefix that is neither empty nor too long in upper case, so pass one that
    /// is not needed afterwards.
    bool startsWithNoCase(FixedString &prefix) const
    {
        if (isEmpty() || prefix.isEmpty() || prefix.length > length)
            return false;
        prefix.toUpper();
        return sameUnitsNoCase(value, prefix.value, prefix.length);
    }

    /// Whether the string ends with `suffix`, case-insensitive; false when either is empty.
    bool endsWithNoCase(const FixedString &suffix) const
    {
        if (isEmpty() || suffix.isEmpty() || suffix.length > length)
            return false;
        return sameUnitsNoCase(value + length - suffix.length, suffix.value, suffix.length);
    }

    /// Whether the string begins with a parent reference, "..".
    bool startsWithParentReference() const;

    /// Whether the string begins with two backslashes, as a network path does.
    bool isUncPath() const;

    /// Compares case-insensitively, by the bytes of the units in memory instead of their values.
    /// After an equal beginning the shorter string is the smaller. Negative, 0 or positive.
    /// Frozen: not called here.
    qint32 compareNoCase(const FixedString &other) const;

    /// Whether both strings are equal, case-insensitive. Frozen: not called here.
    bool equalsNoCase(const FixedString &other) const
    {
        return length == other.length && sameUnitsNoCase(value, other.value, length);
    }

    /// Position of the first `text`, case-insensitive, at or after `from`; -1 when there is none or
    /// `text` is empty. A negative `from` is taken for 0.
    qint32 indexOfNoCase(const FixedString &text, qint32 from) const;

    /// Position of the first `unit`, case-insensitive, at or after `from`; -1 when there is none. A
    /// start outside 1 to length - 1 is taken for 0.
    qint32 indexOfUnitNoCase(Unit unit, qint32 from = 0) const
    {
        const qint32 start = from >= 1 && from < length ? from : 0;
        for (qint32 i = start; i < length; ++i)
            if (upperCaseUnit(value[i]) == upperCaseUnit(unit))
                return i;
        return -1;
    }

    /// Position of the last `unit`, case-sensitive, before `end`; -1 when there is none. `end` is
    /// at most the length.
    qint32 lastIndexOfUnit(Unit unit, qint32 end) const
    {
        qint32 position = end - 1;
        while (position >= 0 && value[position] != unit)
            --position;
        return position;
    }
};

using FixedWideString = FixedString<char16_t, 500>;
using FixedWideString250 = FixedString<char16_t, 250>;
using FixedNarrowString100 = FixedString<char, 100>;
using FixedNarrowString250 = FixedString<char, 250>;
using FixedNarrowString500 = FixedString<char, 500>;

/// A fixed string with the given 8-bit text.
template <typename Fixed>
Fixed fixedText(const char *text)
{
    Fixed result;
    result.assignNarrow(text);
    return result;
}

/// A fixed string with the first units of a QString.
template <typename Fixed>
Fixed fixedText(const QString &text)
{
    Fixed result;
    result.assignQString(text);
    return result;
}

template <typename Unit, qint32 Capacity>
void FixedString<Unit, Capacity>::insertAt(const qint32 &position, const FixedString &text)
{
    const qint32 head = qBound<qint32>(0, position, length);
    FixedString result = left(head);
    result.appendUnits(text.value, text.length);
    result.appendUnits(value + head, length - head);
    assign(result);
}

template <typename Unit, qint32 Capacity>
void FixedString<Unit, Capacity>::removeRange(const qint32 &position, const qint32 &count)
{
    const qint32 head = qBound<qint32>(0, position, length);
    const qint64 end = static_cast<qint64>(position) + count;
    const qint32 rest = static_cast<qint32>(qBound<qint64>(0, end, length));
    FixedString result = left(head);
    result.appendUnits(value + rest, length - rest);
    assign(result);
}

template <typename Unit, qint32 Capacity>
FixedString<Unit, Capacity> &
FixedString<Unit, Capacity>::replaceAllNoCase(const FixedString &find,
                                              const FixedString &replacement)
{
    qint32 found = indexOfNoCase(find, 0);
    while (found >= 0) {
        FixedString result = left(found);
        result.appendUnits(replacement.value, replacement.length);
        result.appendUnits(value + found + find.length, length - found - find.length);
        assign(result);
        found = indexOfNoCase(find, found + replacement.length);
    }
    return *this;
}

template <typename Unit, qint32 Capacity>
bool FixedString<Unit, Capacity>::startsWithParentReference() const
{
    auto reference = fixedText<FixedString>("..");
    return startsWithNoCase(reference);
}

template <typename Unit, qint32 Capacity>
bool FixedString<Unit, Capacity>::isUncPath() const
{
    auto separators = fixedText<FixedString>("\\\\");
    return startsWithNoCase(separators);
}

template <typename Unit, qint32 Capacity>
qint32 FixedString<Unit, Capacity>::compareNoCase(const FixedString &other) const
{
    FixedString upper = *this;
    FixedString otherUpper = other;
    upper.toUpper();
    otherUpper.toUpper();
    const std::size_t common = qMin(length, other.length);
    const qint32 order = std::memcmp(upper.value, otherUpper.value, common * sizeof(Unit));
    if (order != 0 || length == other.length)
        return order;
    return length < other.length ? -1 : 1;
}

template <typename Unit, qint32 Capacity>
qint32 FixedString<Unit, Capacity>::indexOfNoCase(const FixedString &text, qint32 from) const
{
    const qint32 start = qMax(from, 0);
    if (text.isEmpty() || text.length > length - start)
        return -1;

    // Frozen: one pass with a running sum of the span's units. The units themselves are compared
    // only where the sum equals that of the searched text.
    FixedString upper = *this;
    FixedString needle = text;
    upper.toUpper();
    needle.toUpper();
    quint32 needleSum = 0;
    quint32 spanSum = 0;
    for (qint32 i = 0; i < needle.length; ++i) {
        needleSum += static_cast<quint32>(needle.value[i]);
        spanSum += static_cast<quint32>(upper.value[start + i]);
    }
    const std::size_t needleBytes = needle.length * sizeof(Unit);
    for (qint32 i = start;; ++i) {
        if (spanSum == needleSum && std::memcmp(upper.value + i, needle.value, needleBytes) == 0)
            return i;
        if (i + needle.length >= length)
            return -1;
        spanSum += static_cast<quint32>(upper.value[i + needle.length]);
        spanSum -= static_cast<quint32>(upper.value[i]);
    }
}
