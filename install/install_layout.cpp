#include "install/install_layout.h"

namespace {

/// An entry and its folder below a root.
struct Folder
{
    InstallEntry entry;
    const char *below;
};

constexpr Folder belowInstallRoot[] = {
    { subFolder, "sub\\" },
    { globalConfig, "sub\\cfg_global\\" },
    { userConfig, "sub\\cfg_user\\" },
    { historyDatabase, "sub\\history_db\\" },
    { statistics, "sub\\stats\\" },
    { autoload, "autoload\\" },
    { jobData, "kxJobdata\\" },
    { websiteTemplates, "sub\\cfg_website_templates\\" },
};

constexpr Folder belowExecutablesRoot[] = {
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

// The settings of the render applications: those that may come from either root, and the others.
constexpr Folder movableRenderApps[] = {
    { renderAppConfig, "_config\\" },
    { prePostScripts, "_prepost_scripts\\" },
    { renderAppScripts, "scripts\\" },
};

constexpr Folder otherRenderApps[] = {
    { setEnvAllSystems, "_setenv\\all\\" },
    { renderAppInstallPaths, "_install_paths\\" },
    { submitPlugins, "_submitplugins\\" },
    { setEnvWindows, "_setenv\\win\\" },
};

constexpr Folder belowLocalData[] = {
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
void setFolders(InstallPaths &paths, const QString &root, const Folder (&folders)[Count])
{
    for (const Folder &folder : folders)
        setFolder(paths, folder.entry, root + QLatin1String(folder.below));
}

/// The data of a debug build is that of its release twin. Replaced in the entry itself, so that
/// what the first replacement pushes past 250 units is gone before the second.
void turnDebugIntoRelease(FixedWideString250 &folder)
{
    folder.replaceAllNoCase(fixedText<FixedWideString250>("_debug"),
                            fixedText<FixedWideString250>("_release"));
}

} // namespace

void layOutBelowRoots(InstallPaths &paths, bool cfgGlobalFromExeRoot, bool renderAppsFromExeRoot,
                      bool win64Binaries)
{
    turnDebugIntoRelease(paths.entries[installRoot]);
    const QString root = folderOf(paths, installRoot);
    const QString programs = folderOf(paths, executablesRoot);
    const QLatin1String renderApps("render_apps\\");

    setFolders(paths, root, belowInstallRoot);
    const QString status = folderOf(paths, statusFolder);
    if (!status.isEmpty())
        setFolder(paths, jobData, status + QLatin1String("kxJobdata\\"));
    setFolder(paths, globalConfigOfPrograms,
              (cfgGlobalFromExeRoot ? programs : root) + QLatin1String("sub\\cfg_global\\"));

    setFolders(paths, (renderAppsFromExeRoot ? programs : root) + renderApps, movableRenderApps);
    setFolders(paths, root + renderApps, otherRenderApps);

    setFolders(paths, programs, belowExecutablesRoot);
    if (!win64Binaries)
        paths.entries[bin64Folder] = paths.entries[binFolder];
    turnDebugIntoRelease(paths.entries[pluginsFolder]);
    paths.entries[unusedFolder].clear();
}

void layOutRenderApps(InstallPaths &paths, FixedNarrowString100 folder)
{
    folder.toBackslashes();
    if (!folder.endsWithBackslash())
        folder.appendUnits("\\", 1);
    setFolders(paths, folder.toQString(), movableRenderApps);
    setFolders(paths, folder.toQString(), otherRenderApps);
}

void buildLocalDataLayout(InstallPaths &paths)
{
    setFolders(paths, folderOf(paths, localData), belowLocalData);
}
