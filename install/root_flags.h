// The flags that every tool of the suite reads. Arguments are read as Latin-1.
#pragma once

#include "install/install_paths.h"

#include <QStringList>

/// The values of all "-kxRoot" flags, in order. Entities in flags and values are decoded. A value
/// gets a trailing backslash unless it ends with a backslash or slash. Any argument but the last is
/// a flag if it begins with "-kxRoot", in any case; the next one is its value, whatever it is.
QStringList rootFlagValues(int argc, char **argv);

/// Sets the status folder from the last "-loadstatus" flag; empty without the flag. Entities are
/// decoded in the value, not in the flag. A final quote of the value is dropped, and a trailing
/// backslash added when it lacks one and there is room. A value that begins with ".." is relative
/// to the installation root; a network share to which it leads has no trailing backslash.
void readStatusFlags(InstallPaths &paths, int argc, char **argv);
