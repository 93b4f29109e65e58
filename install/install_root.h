// What makes a folder an installation root, and the file by which a root points elsewhere.
#pragma once

#include "install/install_paths.h"

/// Whether a folder, given with its closing backslash, is an installation of the suite: it has the
/// configuration folder or its files, a program of the suite, or, as a debug build, a release twin
/// with a relink file. False for an empty text.
bool isValidRoot(const QString &root);

enum class Relink {
    none, // the root has no relink file
    done,
    unreadable,
};

/// Reads the first line of the relink file below the installation root, or below its release twin.
///
/// "Root = folder" moves the installation root there and notes so in `rootLog`, whether or not the
/// folder is a root; "ExeRoot = folder" sets the executables root, as it stands. Keys in any case.
/// Whenever there is a file, the installation root is empty afterwards unless that line moved it.
/// The folder is read as Latin-1.
Relink readRelinkFile(InstallPaths &paths, QString &rootLog);
