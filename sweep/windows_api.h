// The product's only include of <windows.h>, its test for a folder, and conversions to and from
// wchar_t.
#pragma once

#include <windows.h> // the build sets its options

#include "text/fixed_string.h"

static_assert(sizeof(wchar_t) == sizeof(char16_t), "wchar_t of Windows is a UTF-16 unit");

/// Whether attributes from Windows, not INVALID_FILE_ATTRIBUTES, are those of a folder.
inline bool hasFolderAttribute(DWORD attributes)
{
    return (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

/// The zero-terminated units of a text, for the wide-character functions of Windows. Valid until
/// the text is changed or destroyed.
inline const wchar_t *toWChar(const QString &text)
{
    return reinterpret_cast<const wchar_t *>(text.utf16());
}

template <qint32 Capacity>
const wchar_t *toWChar(const FixedString<char16_t, Capacity> &text)
{
    return reinterpret_cast<const wchar_t *>(text.value);
}

/// The text of `length` units, unit for unit. QString's own conversions from wide characters drop a
/// leading U+FEFF as a byte order mark, which would change a file's name.
inline QString fromWChar(const wchar_t *units, int length)
{
    return QString(reinterpret_cast<const QChar *>(units), length);
}
