#include "sweep/file_time.h"

#include <ctime>

namespace {

constexpr quint64 ticksFrom1601To1970 = 116444736000000000u;
constexpr qint64 ticksPerSecond = 10000000;
constexpr quint32 minutesPerDay = 1440;
constexpr quint32 secondsPerMinute = 60;

} // namespace

void currentTime(TimeStamp &now) { now = _time64(nullptr); }

void fileTimeToSeconds(TimeStamp &seconds, quint32 low, quint32 high)
{
    const quint64 ticks = (static_cast<quint64>(high) << 32) | low;
    seconds = static_cast<qint64>(ticks - ticksFrom1601To1970) / ticksPerSecond;
}

bool hasElapsed(TimeStamp &stamp, qint64 span, bool update, const TimeStamp *now)
{
    TimeStamp current = 0;
    if (now != nullptr)
        current = *now;
    else
        currentTime(current);
    // Unsigned, so that the sum wraps.
    const auto end =
        static_cast<TimeStamp>(static_cast<quint64>(stamp) + static_cast<quint64>(span));
    if (current <= end)
        return false;
    if (update)
        stamp = current;
    return true;
}

qint32 daysToMinutes(qint32 days)
{
    return static_cast<qint32>(static_cast<quint32>(days) * minutesPerDay);
}

qint32 minutesToSeconds(qint32 minutes)
{
    return static_cast<qint32>(static_cast<quint32>(minutes) * secondsPerMinute);
}
