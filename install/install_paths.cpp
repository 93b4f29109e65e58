#include "install/install_paths.h"

#include "install/app_path.h"
#include "sweep/file_ops.h"
#include "sweep/windows_api.h"

namespace {

constexpr DWORD driveCBit = 1u << 2;

/// An entry and its folder below a root.
struct EntryFolder
{
    InstallEntry entry;
    const char *below;
};

constexpr EntryFolder belowInstallRoot[] = {
    { subFolder, "sub\\" },
    { globalConfig, "sub\\cfg_global\\" },
    { userConfig, "sub\\cfg_user\\" },
    { historyDatabase, "sub\\history_db\\" },
    { statistics, "sub\\stats\\" },
    { autoload, "autoload\\" },
    { jobData, "kxJobdata\\" },
    { websiteTemplates, "sub\\cfg_website_templates\\" },
};

constexpr EntryFolder belowExecutablesRoot[] = {
    { logFolder, "sub\\log\\" },
    { userLogFolder, "sub_user\\log\\" },
    { binFolder, "bin\\win\\" },
    { bin64Folder, "bin\\win64\\" },
    { serverJobPlugins, "plugins64\\server_jobs\\" },
    { serverNotifyPlugins, "plugins64\\server_notify\\" },
    { imagePlugins, "plugins64\\image\\" },
    { sceneParserPlugins, "plugins64\\submitter_sceneparser\\" },
    { pluginsFolder, "plugins\\" },
};

// The settings of the render applications: first those that may come from either root.
constexpr EntryFolder movableRenderApps[] = {
    { renderAppConfig, "_config\\" },
    { prePostScripts, "_prepost_scripts\\" },
    { renderAppScripts, "scripts\\" },
};

constexpr EntryFolder otherRenderApps[] = {
    { setEnvAllSystems, "_setenv\\all\\" },
    { renderAppInstallPaths, "_install_paths\\" },
    { submitPlugins, "_submitplugins\\" },
    { setEnvWindows, "_setenv\\win\\" },
};

constexpr EntryFolder belowLocalData[] = {
    { renderScripts, "renderscripts\\" },
    { localTextures, "textures\\" },
    { localTemp, "temp\\" },
    { localRenderOutput, "renderout\\" },
    { localCachedScenes, "cachedscenes\\" },
    { localRendererPreferences, "renderer_prefs\\" },
    { localRendererPrograms, "renderer_exe\\" },
    { localServer, "_kxServer\\" },
};

QString folderOf(const InstallPaths &paths, InstallEntry entry)
{
    return paths.entries[entry].toQString();
}

void setFolder(InstallPaths &paths, InstallEntry entry, const QString &folder)
{
    paths.entries[entry].assignQString(folder);
}

template <std::size_t Count>
void setFolders(InstallPaths &paths, const QString &root, const EntryFolder (&folders)[Count])
{
    for (const EntryFolder &folder : folders)
        setFolder(paths, folder.entry, root + QLatin1String(folder.below));
}

/// A debug build uses the data and the plugins of its release build. Frozen: case-insensitive,
/// unlike the test for a release build's relink file. Replaced within the fixed string, so that
/// what the first replacement pushes past 250 units is gone before the second.
void debugToReleaseNoCase(FixedWideString250 &folder)
{
    folder.replaceAllNoCase(fixedText<FixedWideString250>("_debug"),
                            fixedText<FixedWideString250>("_release"));
}

void setFoldersBelowRoots(InstallPaths &paths, bool cfgGlobalFromExeRoot,
                          bool renderAppsFromExeRoot, bool win64Binaries)
{
    debugToReleaseNoCase(paths.entries[installRoot]);
    const QString root = folderOf(paths, installRoot);
    const QString executables = folderOf(paths, executablesRoot);
    const QLatin1String renderApps("render_apps\\");

    setFolders(paths, root, belowInstallRoot);
    const QString status = folderOf(paths, statusFolder);
    if (!status.isEmpty())
        setFolder(paths, jobData, status + QLatin1String("kxJobdata\\"));
    setFolder(paths, globalConfigOfPrograms,
              (cfgGlobalFromExeRoot ? executables : root) + QLatin1String("sub\\cfg_global\\"));

    setFolders(paths, (renderAppsFromExeRoot ? executables : root) + renderApps, movableRenderApps);
    setFolders(paths, root + renderApps, otherRenderApps);

    setFolders(paths, executables, belowExecutablesRoot);
    if (!win64Binaries)
        paths.entries[bin64Folder] = paths.entries[binFolder];
    debugToReleaseNoCase(paths.entries[pluginsFolder]);
    paths.entries[unusedFolder].clear();
}

void setRenderAppFolders(InstallPaths &paths, FixedNarrowString100 folder)
{
    folder.toBackslashes();
    folder.addTrailingBackslash();
    setFolders(paths, folder.toQString(), movableRenderApps);
    setFolders(paths, folder.toQString(), otherRenderApps);
}

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
    setFoldersBelowRoots(paths, cfgGlobalFromExeRoot, renderAppsFromExeRoot, win64Binaries);
    if (!renderAppsOverride.isEmpty() && folderExists(renderAppsOverride.toQString()))
        setRenderAppFolders(paths, renderAppsOverride);
    if (argc > 0) {
        FixedNarrowString250 folder;
        appFolder(argv[0], folder);
        paths.entries[programFolder].assignQString(normalizePath(folder.toQString()));
    }
    paths.entries[localData].assignQString(localDataFolder());
    buildLocalDataLayout(paths);
}

void buildLocalDataLayout(InstallPaths &paths)
{
    setFolders(paths, folderOf(paths, localData), belowLocalData);
}
