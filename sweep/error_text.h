// The system's error codes as one line of text.
//
// Texts are in the user's language where the system has them. Codes are shown as signed decimal
// numbers. Every code yields some text.
#pragma once

#include "text/fixed_string.h"

/// Stands for the calling thread's last error (GetLastError), which the next platform call may
/// overwrite: use it directly behind the call that failed.
constexpr quint32 lastErrorCode = 0xFFFFFFFF;

/// "Error 5: Access denied.." for 5: the number, the system's message (FormatMessageW) and a full
/// stop, which follows the message's own. Line breaks become blanks; cut at 500 units.
///
/// 0 and 126 have fixed texts; a code without a system message gets its exceptionCodeText.
FixedWideString systemErrorText(quint32 code);

/// The meaning of a structured-exception code, or the message that ntdll.dll holds for a status
/// code (FormatMessageA); line breaks inside stay. Without either "ERROR code 7. (No system message
/// found)" for 7. Cut at 500 bytes.
FixedNarrowString500 exceptionCodeText(quint32 code);
