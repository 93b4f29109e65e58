#include "app/free_space.h"

#include "sweep/windows_api.h"
#include "text/path.h"

namespace {

constexpr qint32 rootBufferUnits = 255; // the terminator included
constexpr int bytesToMiBShift = 20;
constexpr quint32 unknownFreeSpaceMiB = 1000; // frozen; a report shows it like any other

/// The root of the volume that holds the path; empty when the path has none.
QString volumeRoot(const QString &path)
{
    if (path.size() < 3)
        return QString();
    if (path.at(1) == QLatin1Char(':'))
        return path.left(3);
    const qint32 endOfServer = path.indexOf(backslash, 3);
    if (endOfServer < 0 && path.startsWith(QString(2, backslash)))
        return QString(); // a server without a share
    // Frozen: if endOfServer is -1, this search starts at 0, so \temp has the root "\".
    const qint32 endOfShare = path.indexOf(backslash, endOfServer + 1);
    return path.left(endOfShare + 1);
}

} // namespace

quint32 freeDriveSpaceMiB(QString path)
{
    const QString root = volumeRoot(path);
    if (root.isEmpty() || root.size() >= rootBufferUnits)
        return unknownFreeSpaceMiB;
    ULARGE_INTEGER freeToCaller;
    ULARGE_INTEGER total;
    ULARGE_INTEGER totalFree;
    if (GetDiskFreeSpaceExW(toWChar(root), &freeToCaller, &total, &totalFree) == 0)
        return unknownFreeSpaceMiB;
    return static_cast<quint32>(freeToCaller.QuadPart >> bytesToMiBShift);
}
