// Lets GoogleTest print our kinds of text, and makes them from literals.
#pragma once

#include "text/fixed_string.h"

#include <ostream>
#include <string>

inline void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"' << text.toUtf8().constData() << '"';
}

/// Latin-1 text as a QString.
inline QString q(const char *text) { return QString::fromLatin1(text); }

inline QString q(const std::wstring &text)
{
    return QString(reinterpret_cast<const QChar *>(text.data()), static_cast<int>(text.size()));
}

/// `count` times the letter.
inline QString run(int count, char letter = 'x') { return QString(count, QLatin1Char(letter)); }

inline FixedWideString wide(const QString &text) { return fixedText<FixedWideString>(text); }
