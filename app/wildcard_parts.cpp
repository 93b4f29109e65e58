#include "app/wildcard_parts.h"

#include "text/path.h"

WildcardParts splitAtWildcard(const QString &path)
{
    const qint32 star = path.indexOf(asterisk);
    const QString prefix = path.left(star);
    const QString behind = path.mid(star + 1);
    const qint32 separator = behind.indexOf(backslash);

    WildcardParts parts;
    parts.base = folderOfPath(prefix);
    parts.nameStart = prefix.mid(parts.base.size());
    parts.nameEnd = behind.left(separator); // all of it without a backslash
    if (separator >= 0)
        parts.rest = behind.mid(separator);
    return parts;
}
