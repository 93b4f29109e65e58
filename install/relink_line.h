// The line of a relink file.
#pragma once

#include "install/install_paths.h"

/// Applies a line without blanks at its ends. "Root = folder" sets the installation root, closed
/// with a backslash; "ExeRoot = folder" sets the executables root, as it stands. Keys in any case,
/// and whatever begins with one counts; any other line changes nothing.
void applyRelinkLine(InstallPaths &paths, const QString &line);
