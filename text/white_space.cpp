#include "text/white_space.h"

namespace {

bool isWhiteSpace(QChar unit) { return unit.isSpace() && unit != nextLineCharacter; }

} // namespace

QString trimmedText(const QString &text)
{
    qint32 begin = 0;
    qint32 end = text.size();
    while (begin < end && isWhiteSpace(text.at(begin)))
        ++begin;
    while (begin < end && isWhiteSpace(text.at(end - 1)))
        --end;
    return text.mid(begin, end - begin);
}
