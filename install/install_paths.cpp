#include "install/install_paths.h"

#include "install/app_path.h"
#include "install/install_layout.h"
#include "sweep/file_ops.h"
#include "sweep/windows_api.h"
#include "text/path.h"

namespace {

constexpr DWORD driveCBit = 1u << 2;

QString localDataFolder()
{
    QString drive = QString::fromLatin1("C:");
    if ((GetLogicalDrives() & driveCBit) == 0) {
        const QString systemDrive = getEnv(QString::fromLatin1("SystemDrive"));
        if (!systemDrive.isEmpty())
            drive = systemDrive;
    }
    return drive + QLatin1String("\\KX_localdata\\");
}

} // namespace

void buildInstallLayout(InstallPaths &paths, int argc, char **argv, bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride,
                        bool win64Binaries)
{
    layOutBelowRoots(paths, cfgGlobalFromExeRoot, renderAppsFromExeRoot, win64Binaries);
    if (!renderAppsOverride.isEmpty() && folderExists(renderAppsOverride.toQString()))
        layOutRenderApps(paths, renderAppsOverride);
    if (argc > 0) {
        FixedNarrowString250 folder;
        appFolder(argv[0], folder);
        paths.entries[programFolder].assignQString(normalizePath(folder.toQString()));
    }
    paths.entries[localData].assignQString(localDataFolder());
    buildLocalDataLayout(paths);
}
