// White space as QtCore 4 knows it.
//
// To QtCore 5, U+0085 is white space too. It is byte 0x85 of the command line, the ellipsis of code
// page 1252. "14..." with that ellipsis must not be taken for the number 14.
#pragma once

#include <QString>

constexpr ushort nextLine = 0x0085; // not white space here

/// The text without white space at both ends.
QString trimmedText(const QString &text);
