// Finds the installation root of the suite.
#pragma once

#include "install/install_paths.h"

/// Finds the installation root and fills the whole layout. The sources, in this order: the -kxRoot
/// flag, KX_ROOT_INSTALLER, two folders above the running program's folder, the path in argv[0],
/// KX_ROOT. Arguments are read as Latin-1.
///
/// A candidate from the first three sources gets "\_internal_" replaced by "\_" and slashes by
/// backslashes, and is then tested (for the first two sources, a second time). The root's relink
/// file may move the root. Without a relink file, a root whose name ends in _KX9 is replaced by the
/// folder above it, if that is a root. -loadstatus sets the status folder. In the layout, the root
/// of a debug build is replaced by that of its release build, without another test.
///
/// rootLog                gets a line for each source tried, except argv[0], and for a moved root
/// startedOutsideRoot     whether argv[0] does not begin with the root, case-sensitive and before
///                        slashes are converted; set only when the flag named the root and
///                        argv[0] has a drive. Frozen: not read here
/// cfgGlobalFromExeRoot, renderAppsFromExeRoot, renderAppsOverride, win64Binaries
///                        options of the layout, explained at buildInstallLayout
///
/// False when no source has a valid root; `paths` is then unchanged. Also false when the relink
/// file cannot be opened; the installation root is then empty. A frozen interface, see
/// CONTRIBUTING.md.
bool findInstallRoot(InstallPaths &paths, int argc, char **argv, QString &rootLog,
                     bool &startedOutsideRoot, bool cfgGlobalFromExeRoot,
                     bool renderAppsFromExeRoot, const FixedNarrowString100 &renderAppsOverride,
                     bool win64Binaries);
