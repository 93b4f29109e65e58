#include "app/free_space_root.h"

#include "text/path.h"

QString freeSpaceRoot(const QString &path)
{
    if (path.size() < 3)
        return QString();
    if (path.at(1) == QLatin1Char(':'))
        return path.left(3);
    const qint32 behindServer = path.indexOf(backslash, 3);
    if (behindServer < 0 && path.startsWith(QLatin1String("\\\\")))
        return QString(); // a server without a share
    // Without that backslash the search for the next one starts at the beginning.
    const qint32 behindShare = path.indexOf(backslash, behindServer + 1);
    return path.left(behindShare + 1);
}
