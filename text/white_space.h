// White space as QtCore 4 knows it.
//
// QtCore 5 also counts U+0085, which is byte 0x85 of the command line: the ellipsis of code page
// 1252. "14" with that ellipsis is not the number 14.
#pragma once

#include <QString>

constexpr ushort nextLine = 0x0085; // not white space here

/// The text without white space at either end.
QString trimmedText(const QString &text);
