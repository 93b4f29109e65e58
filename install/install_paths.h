// The folders of an installation of the suite, derived from its two roots by fixed rules.
//
// Every tool of the suite builds the same layout. Folders are texts of at most 250 UTF-16 units,
// cut without a trace; those that are not empty end in a backslash, unless a folder that came from
// outside was too long or came without one. Nothing is created.
#pragma once

#include "text/fixed_string.h"

/// What each entry of InstallPaths holds.
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
    unusedFolder = 28,    // always empty
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

/// The 39 folders; all are empty at first.
struct InstallPaths
{
    FixedWideString250 entries[39];
};

/// Fills every folder from the installation root, the executables root and the status folder.
///
/// `renderAppsOverride`, where it names an existing folder, is where the settings of the render
/// applications are; it wins over `renderAppsFromExeRoot`, which takes some of them from the
/// executables root. `cfgGlobalFromExeRoot` does so with the global configuration;
/// `win64Binaries` tells whether the 64-bit programs have a folder of their own. The program's
/// folder needs an `argc` above 0. (GetLogicalDrives, environment variable SystemDrive)
void buildInstallLayout(InstallPaths &paths, int argc, char **argv, bool cfgGlobalFromExeRoot,
                        bool renderAppsFromExeRoot, FixedNarrowString100 renderAppsOverride,
                        bool win64Binaries);

/// Fills the folders below the local data folder.
void buildLocalDataLayout(InstallPaths &paths);
