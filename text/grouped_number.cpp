#include "text/grouped_number.h"

namespace {

constexpr quint64 largestUngrouped = 1000;
constexpr quint64 groupSize = 1000;
constexpr int maxGroups = 3;

QString threeDigits(quint64 group)
{
    return QString::fromLatin1("%1").arg(group, 3, 10, QLatin1Char('0'));
}

} // namespace

QString formatGroupedNumber(qint64 number)
{
    const QString sign = number < 0 ? QString(QLatin1Char('-')) : QString();
    // Unsigned, so that the smallest number can be negated too.
    auto rest = static_cast<quint64>(number);
    if (number < 0)
        rest = 0 - rest;
    QString tail;
    for (int groups = 0; groups < maxGroups && rest > largestUngrouped; ++groups) {
        tail.prepend(QLatin1Char(' ') + threeDigits(rest % groupSize));
        rest /= groupSize;
    }
    return sign + QString::number(rest) + tail;
}
