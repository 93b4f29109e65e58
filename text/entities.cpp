#include "text/entities.h"

namespace {

struct Entity
{
    const char *name;
    ushort character;
};

// In the order in which they are decoded.
constexpr Entity entities[] = {
    { "&lt;", '<' },      { "&gt;", '>' },      { "&quot;", '"' },    { "&apos;", '\'' },
    { "&amp;", '&' },     { "&#196;", 0x00C4 }, { "&#214;", 0x00D6 }, { "&#220;", 0x00DC },
    { "&#228;", 0x00E4 }, { "&#246;", 0x00F6 }, { "&#252;", 0x00FC }, { "&#223;", 0x00DF },
};

} // namespace

QString decodeEntities(QString text)
{
    for (const Entity &entity : entities)
        text.replace(QLatin1String(entity.name), QString(QChar(entity.character)));
    return text;
}
