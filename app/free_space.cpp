#include "app/free_space.h"

#include "sweep/windows_api.h"

namespace {

constexpr qint32 rootBufferUnits = 255; // the terminator included
constexpr int bytesPerMiBShift = 20;
constexpr QChar backslash = QLatin1Char('\\');

} // namespace

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

quint32 freeDriveSpaceMiB(QString path)
{
    const QString root = freeSpaceRoot(path);
    if (root.isEmpty() || root.size() >= rootBufferUnits)
        return unknownFreeSpaceMiB;
    ULARGE_INTEGER freeToCaller;
    ULARGE_INTEGER total;
    ULARGE_INTEGER totalFree;
    if (GetDiskFreeSpaceExW(platformText(root), &freeToCaller, &total, &totalFree) == 0)
        return unknownFreeSpaceMiB;
    return static_cast<quint32>(freeToCaller.QuadPart >> bytesPerMiBShift);
}
