// The folders of an installation of the suite, derived from its two roots.
//
// Folders are silently truncated at 250 UTF-16 units. They end with a backslash, unless they are
// empty, truncated, taken unchanged (KX_ROOT with a slash, ExeRoot), or a network share that
// "-loadstatus .." leads to. No folder is created. A frozen interface of the suite's tools, see
// CONTRIBUTING.md.
#pragma once

#include "text/fixed_string.h"

/// The entries of InstallPaths.
enum InstallEntry {
    installRoot = 0, // the data side: configuration, jobs, settings
    binFolder = 1,
    subFolder = 2,
    globalConfig = 3,
    userConfig = 4,
    jobData = 5,
    autoload = 6,
    renderScripts = 7,
    websiteTemplates = 8,
    renderAppConfig = 9,
    prePostScripts = 10,
    setEnvWindows = 11,
    renderAppInstallPaths = 12,
    submitPlugins = 13,
    logFolder = 14,
    historyDatabase = 15,
    serverJobPlugins = 16,
    serverNotifyPlugins = 17,
    bin64Folder = 18,
    imagePlugins = 19,
    sceneParserPlugins = 20,
    localData = 21, // scratch data of this machine
    localTextures = 22,
    localRendererPrograms = 23,
    localTemp = 24,
    localRenderOutput = 25,
    localCachedScenes = 26,
    localRendererPreferences = 27,
    unusedFolder = 28,    // frozen: always empty
    executablesRoot = 29, // the program side: binaries, plugins, logs
    statusFolder = 30,    // from the command line
    statistics = 31,
    pluginsFolder = 32,
    programFolder = 33, // of the running program
    globalConfigOfPrograms = 34,
    setEnvAllSystems = 35,
    renderAppScripts = 36,
    userLogFolder = 37,
    localServer = 38,
};

/// The 39 folders, all empty at first.
struct InstallPaths
{
    FixedWideString250 entries[39];
};

/// Fills every folder from the installation root, the executables root and the status folder. With
/// an `argc` of 0 the program's folder stays empty. In the installation root itself and in
/// pluginsFolder, "_debug" in any case becomes "_release", without another test. (GetLogicalDrives,
/// variable SystemDrive)
///
/// cfgGlobalFromExeRoot   takes globalConfigOfPrograms from the executables root
/// renderAppsFromExeRoot  takes renderAppConfig, prePostScripts and renderAppScripts from there
/// renderAppsOverride     an existing folder for all settings of the render applications; it wins
/// win64Binaries          the 64-bit programs have their own folder, bin\win64
void buildInstallLayout(InstallPaths &paths, int argc, char **argv, bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride,
                        bool win64Binaries);

/// Fills the folders below the local data folder.
void buildLocalDataLayout(InstallPaths &paths);
