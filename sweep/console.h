// Standard output, the only place to which the tool prints.
#pragma once

/// Prints to standard output like the C run-time library's printf, from whose own formatted print
/// it rests (not on the compiler's replacement). Line feeds leave as CR LF when redirected.
[[gnu::format(ms_printf, 1, 2)]] void print(const char *format, ...);

/// Hands on what was printed so far, so that the log of a long or killed run shows how far it came.
void flushOutput();
