// Times and age limits: seconds since 1970-01-01 00:00 UTC, and spans in minutes and seconds.
//
// All times are UTC, so no time zone enters the age of a file. Sums and differences wrap in 64
// bits, so every input has a result. A frozen interface of the suite's tools, see CONTRIBUTING.md,
// except daysToMinutes and minutesToSeconds.
#pragma once

#include <QtGlobal>

/// Seconds since 1970-01-01 00:00 UTC; negative before.
using TimeStamp = qint64;

/// Fills `now` with the current time (_time64 of the C run-time).
void currentTime(TimeStamp &now);

/// Fills `seconds` with a Win32 file time given as its two 32-bit words.
///
/// A file time counts 100 ns ticks since 1601-01-01 UTC (FILETIME). The part below a second is
/// dropped toward 1970, so times before 1970 round up.
///
///     116444736000000000 ticks return 0; 116444736010000000, one second later, return 1
void fileTimeToSeconds(TimeStamp &seconds, quint32 low, quint32 high);

/// Whether more than `span` seconds have passed from `stamp` to `now`; false at exactly stamp +
/// span. Without `now` the current time is taken. When the result is true and `update` is set,
/// `stamp` becomes that time.
bool hasElapsed(TimeStamp &stamp, qint64 span, bool update, const TimeStamp *now = nullptr);

/// Minutes in a number of days, in 32 bits. Frozen: wraps beyond 1491308 days either way, where the
/// sign may change.
qint32 daysToMinutes(qint32 days);

/// Seconds in a number of minutes, in 32 bits. Frozen: wraps beyond 35791394 minutes (24855 days)
/// either way, so a higher age limit may delete younger files.
qint32 minutesToSeconds(qint32 minutes);
