// Standard output, the only place the tool prints to. Failures of printing are ignored.
#pragma once

#include <QByteArray>

/// Prints to standard output, by the formatted print of the C run-time. Redirected output has CR LF
/// for each line feed.
[[gnu::format(ms_printf, 1, 2)]] void print(const char *format, ...);

/// Prints a text as a format without values. Every conversion in it gets 0 or a null pointer ("%d"
/// prints 0, "%s" the C run-time's text for null), in the width that it asks for. Where the C
/// run-time refuses a conversion, such as "%n", the text ends. The program goes on, and no stray
/// memory is read or written.
void printAsFormat(const QByteArray &format);

/// Flushes standard output, so that the log of a long or killed run shows how far it came.
void flushOutput();
