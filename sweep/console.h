// Standard output, the only place to which the tool prints.
#pragma once

#include <QByteArray>

/// Prints to standard output. Rests on the C run-time library's own formatted print, not on the
/// compiler's replacement. Line feeds leave as CR LF when redirected.
[[gnu::format(ms_printf, 1, 2)]] void print(const char *format, ...);

/// Prints a text as a format without values: to a conversion in it every value is 0, a null pointer
/// or an empty one. Where the library refuses a conversion ("%n", a single "%"), the rest of the
/// text may be missing. Never reads or writes memory that is not there, never ends the program.
void printAsFormat(const QByteArray &format);

/// Hands on what was printed so far, so that the log of a long or killed run shows how far it came.
void flushOutput();
