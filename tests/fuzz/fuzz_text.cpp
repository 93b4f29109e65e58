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
    static const struct
    {
        std::u16string name;
        char16_t character;
    } inOrder[] = { { u"&lt;", u'<' },        { u"&gt;", u'>' },        { u"&quot;", u'"' },
                    { u"&apos;", u'\'' },     { u"&amp;", u'&' },       { u"&#196;", u'\u00C4' },
                    { u"&#214;", u'\u00D6' }, { u"&#220;", u'\u00DC' }, { u"&#228;", u'\u00E4' },
                    { u"&#246;", u'\u00F6' }, { u"&#252;", u'\u00FC' }, { u"&#223;", u'\u00DF' } };
    std::u16string expected = text.toStdU16String();
    for (const auto &entity : inOrder)
        for (std::size_t at = 0; (at = expected.find(entity.name, at)) != std::u16string::npos;
             ++at)
            expected.replace(at, entity.name.size(), 1, entity.character);
    require(decodeEntities(text).toStdU16String() == expected);
}

void group(qint64 number)
{
    const QString text = formatGroupedNumber(number);
    QString digits = text;
    digits.remove(QLatin1Char(' '));
    require(digits == QString::number(number));
    qint32 groups = 0;
    for (qint32 blank = text.indexOf(QLatin1Char(' ')); blank >= 0; ++groups) {
        const qint32 next = text.indexOf(QLatin1Char(' '), blank + 1);
        require((next < 0 ? text.size() : next) - blank == 4);
        blank = next;
    }
    // 1000 of a unit stay together, 1001 do not; three times at the most.
    const __int128 size = number < 0 ? -static_cast<__int128>(number) : number;
    qint32 expected = 0;
    for (const qint64 most : { 1000, 1000999, 1000999999 })
        expected += size > most ? 1 : 0;
    require(groups == expected);
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
