// White space as Qt knows it, without U+0085.
//
// QtCore 5 counts it, QtCore 4 does not. It is byte 0x85 of the command line, the ellipsis of code
// page 1252: "14" with an ellipsis is not the number 14. The two also differ in U+180E, which does
// not occur, because these texts are Latin-1.
#pragma once

#include <QString>

const QChar nextLineCharacter = QChar(0x0085); // not white space here

/// The text without white space at either end.
QString trimmedText(const QString &text);
