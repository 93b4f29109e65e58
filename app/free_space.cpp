#include "app/free_space.h"

#include "app/free_space_root.h"
#include "sweep/windows_api.h"

namespace {

constexpr qint32 rootBufferUnits = 255; // the terminator included
constexpr int bytesPerMiBShift = 20;
constexpr quint32 unknownFreeSpaceMiB = 1000; // to a report's reader a number like any other

} // namespace

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
