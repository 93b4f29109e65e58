// Standard output, the only place to which the tool prints.
#pragma once

#include <QByteArray>

/// Prints to standard output. Rests on the C run-time library's own formatted print, not on the
/// compiler's replacement. Line feeds leave as CR LF when redirected.
[[gnu::format(ms_printf, 1, 2)]] void print(const char *format, ...);

/// Prints a text as a format without values: to a conversion in it every value is 0 or a null
/// pointer ("%d" prints 0, "%s" the library's text for null), in the width that it asks for. Where
/// the library refuses a conversion, such as "%n", the text ends there. No memory is read or
/// written that is not there, and the program goes on.
void printAsFormat(const QByteArray &format);

/// Hands on what was printed so far, so that the log of a long or killed run shows how far it came.
void flushOutput();
