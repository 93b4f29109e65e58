// The folders of an installation as far as they follow from its roots alone.
#pragma once

#include "install/install_paths.h"

/// Fills what lies below the installation root, the executables root and the status folder; the
/// flags are those of buildInstallLayout.
void layOutBelowRoots(InstallPaths &paths, bool cfgGlobalFromExeRoot, bool renderAppsFromExeRoot,
                      bool win64Binaries);

/// Takes all settings of the render applications from below `folder`.
void layOutRenderApps(InstallPaths &paths, FixedNarrowString100 folder);
