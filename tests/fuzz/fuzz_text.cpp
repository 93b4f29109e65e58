// Entities of the command line, and numbers as the reports print them.
#include "app/grouped_number.h"
#include "sweep/file_time.h"
#include "text/entities.h"

#include "fuzz_support.h"

namespace {

void decode(FuzzedDataProvider &data)
{
    static const char *const pieces[] = { "&",     "lt;",   "gt;",  "quot;", "apos;",
                                          "amp;",  "#196;", "#223", "#228;", "#246;",
                                          "#252;", ";",     "x",    "&amp;" };
    QString text;
    for (int count = data.ConsumeIntegralInRange(0, 40); count > 0; --count)
        text += QLatin1String(data.PickValueInArray(pieces));
    text += takeText(data, 20);
    const QString decoded = decodeEntities(text);
    require(decoded.size() <= text.size());
    if (!text.contains(QLatin1Char('&')))
        require(decoded == text);
    static const char *const decodedLast[] = { "&#196;", "&#214;", "&#220;", "&#228;",
                                               "&#246;", "&#252;", "&#223;" };
    for (const char *entity : decodedLast)
        require(!decoded.contains(QLatin1String(entity)));
}

void group(qint64 number)
{
    const QString text = formatGroupedNumber(number);
    QString digits = text;
    digits.remove(QLatin1Char(' '));
    require(digits == QString::number(number));
    for (qint32 blank = text.indexOf(QLatin1Char(' ')); blank >= 0;) {
        const qint32 next = text.indexOf(QLatin1Char(' '), blank + 1);
        require((next < 0 ? text.size() : next) - blank == 4);
        blank = next;
    }
}

/// The same with wider numbers than the platform's.
void age(qint64 time, qint32 days, qint64 now, quint32 low, quint32 high)
{
    const auto minutes = static_cast<qint32>(static_cast<qint64>(days) * 1440);
    require(daysToMinutes(days) == minutes);
    const auto seconds = static_cast<qint32>(static_cast<qint64>(minutes) * 60);
    require(minutesToSeconds(minutes) == seconds);
    TimeStamp stamp = time;
    const auto end = static_cast<qint64>(static_cast<__int128>(time) + seconds);
    require(hasElapsed(stamp, seconds, true, &now) == (now > end));
    require(stamp == (now > end ? now : time));
    fileTimeToSeconds(stamp, low, high);
    const auto ticks = static_cast<qint64>(static_cast<quint64>(high) << 32 | low);
    require(stamp
                == static_cast<qint64>(static_cast<__int128>(ticks) - 116444736000000000) / 10000000
            || ticks < 0);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size);
int LLVMFuzzerTestOneInput(const unsigned char *bytes, std::size_t size)
{
    FuzzedDataProvider data(bytes, size);
    group(data.ConsumeIntegral<qint64>() >> data.ConsumeIntegralInRange(0, 63));
    age(data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<qint32>(),
        data.ConsumeIntegral<qint64>(), data.ConsumeIntegral<quint32>(),
        data.ConsumeIntegral<quint32>());
    decode(data);
    return 0;
}
