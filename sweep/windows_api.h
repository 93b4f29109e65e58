// The one door to <windows.h>, whose settings the build gives, and the units of our texts as the
// platform's.
#pragma once

#include <windows.h>

#include "text/fixed_string.h"

static_assert(sizeof(wchar_t) == sizeof(char16_t), "the platform's wide units are UTF-16");

/// The zero-terminated units of a text for a wide-character platform call. They live as long as
/// the text itself is neither changed nor destroyed.
inline const wchar_t *platformText(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

template <qint32 Capacity>
const wchar_t *platformText(const FixedString<char16_t, Capacity> &text)
{
    return reinterpret_cast<const wchar_t *>(text.value);
}

/// The text of `length` units that the platform wrote, unit for unit: QString's own conversions
/// from wide characters take a leading U+FEFF for a byte order mark and drop it, which would turn
/// one file's name into another's.
inline QString textOfPlatform(const wchar_t *units, int length)
{
    return QString(reinterpret_cast<const QChar *>(units), length);
}
