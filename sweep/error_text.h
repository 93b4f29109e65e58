// Windows' error codes as one line of text.
//
// Texts are in the user's language where Windows has them. Codes are shown as signed decimal
// numbers. A frozen interface of the suite's tools, see CONTRIBUTING.md.
#pragma once

#include "text/fixed_string.h"

/// Makes systemErrorText take the calling thread's last error (GetLastError). The next Windows call
/// may overwrite it, so use this directly after the call that failed.
constexpr quint32 useLastError = 0xFFFFFFFF;

/// "Error 5: Access is denied.." for 5: the number, Windows' own words (FormatMessageW), and one
/// more full stop (frozen). A final line break is dropped; others become blanks. 0 and 126 have
/// texts of our own. A code without a message, or whose message has inserts, gets its
/// exceptionCodeText or, when that is empty, "Error ", its number and a full stop. So every code
/// has a text. Truncated at 500 units.
FixedWideString systemErrorText(quint32 code);

/// The meaning of a structured-exception code, or the message of ntdll.dll for a status code
/// (FormatMessageA), with its inner line breaks. Without either, "ERROR code 7. (No system message
/// found)" for 7. Truncated at 500 bytes.
FixedNarrowString500 exceptionCodeText(quint32 code);
