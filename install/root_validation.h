// The test for an installation root, and the relink file, which moves a root. A frozen interface of
// the suite's tools, see CONTRIBUTING.md.
#pragma once

#include "install/install_paths.h"

/// Whether a folder, given with its trailing backslash, is an installation root. A root has the
/// configuration folder, or kxClientconsole, kxServerconsole or kxControl in bin\win64, or it is a
/// debug build whose release build has a relink file. False for an empty text.
bool isValidRoot(const QString &root);

enum class RelinkResult { noFile, read, cannotOpen };

/// Reads the first line of the relink file below the installation root or below its release build.
/// Keys are case-insensitive, and any key that begins with one of them counts.
///
/// "Root = folder" moves the installation root, adds a trailing backslash, and appends the folder
/// to `rootLog` with the verdict of isValidRoot; the folder is used either way. "ExeRoot = folder"
/// sets the executables root, unchanged. Any other line does nothing. Frozen: when there is a file
/// the installation root is empty afterwards unless the line moved it, and the layout is then
/// relative to the current folder. The line is read as Latin-1.
RelinkResult readRelinkFile(InstallPaths &paths, QString &rootLog);
