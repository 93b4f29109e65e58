// Where the suite is installed: found from the command line, the environment and the program
// itself.
#pragma once

#include "install/install_paths.h"

/// Finds the installation root and fills the whole layout. Tried in this order: the -kxRoot flag,
/// KX_ROOT_INSTALLER, the running program's folder (two folders up), the path in argv[0], KX_ROOT.
/// What the first three gave has "\_internal_" replaced by "\_" and slashes by backslashes before
/// it is tested, for the first two once more. The root's relink file may then move it; without one,
/// a root whose name ends in _KX9 gives way to a root above it. -loadstatus gives the status
/// folder.
///
/// rootLog              what was tried and what came of it is appended, for the user to read
/// startedOutsideRoot   set only when the flag gave the root and argv[0] has a drive: whether
///                      argv[0] lies outside it
/// the last four        as for buildInstallLayout
///
/// False when no folder is a valid root; `paths` is untouched then. Also false when the root's
/// relink file cannot be opened: the installation root is empty then. Arguments are Latin-1.
bool findInstallRoot(InstallPaths &paths, int argc, char **argv, QString &rootLog,
                     bool &startedOutsideRoot, bool cfgGlobalFromExeRoot,
                     bool renderAppsFromExeRoot, const FixedNarrowString100 &renderAppsOverride,
                     bool win64Binaries);
