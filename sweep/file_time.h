// Times and age limits: seconds since 1970-01-01 00:00 UTC, and spans in minutes and seconds.
//
// All of it is UTC; no time zone enters the age of a file. Sums and differences wrap in 64 bits,
// so every input has a result.
#pragma once

#include <QtGlobal>

/// Seconds since 1970-01-01 00:00 UTC; negative before.
using TimeStamp = qint64;

/// Fills `now` with the current time, from the C run-time library's _time64.
void currentTime(TimeStamp &now);

/// Fills `seconds` with a Win32 file time given as its two 32-bit words.
///
/// A file time counts 100 ns ticks since 1601-01-01 UTC (FILETIME). The part below a second is
/// dropped toward 1970, so times before 1970 round up.
///
///     the words of 116444736000000000 give 0; 10000000 ticks (one second) later gives 1
void fileTimeToSeconds(TimeStamp &seconds, quint32 low, quint32 high);

/// Whether more than `span` seconds have passed since `stamp`: at exactly stamp + span they have
/// not. Without `now` the current time counts. When they have and `update` is set, `stamp` becomes
/// that time.
bool hasElapsed(TimeStamp &stamp, qint64 span, bool update, const TimeStamp *now = nullptr);

/// Minutes in a number of days, as the low 32 bits: beyond 1491308 days either way it deliberately
/// wraps, and the limit may change its sign.
qint32 daysToMinutes(qint32 days);

/// Seconds in a number of minutes, as the low 32 bits: beyond 35791394 minutes (24855 days) either
/// way it deliberately wraps.
qint32 minutesToSeconds(qint32 minutes);
