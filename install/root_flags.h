// The flags of the command line that every tool of the suite reads. Arguments are Latin-1.
#pragma once

#include "install/install_paths.h"

#include <QStringList>

/// The values of every "-kxRoot" flag, in order: decoded, and closed with a backslash unless they
/// end in a backslash or slash. Whatever begins with the flag, in any case, counts, and so does
/// whatever follows it.
QStringList rootFlagValues(int argc, char **argv);

/// Sets the status folder from the last "-loadstatus" flag, closed with a backslash; empty without
/// one. The value is decoded, the flag is not; a quote at the value's end is dropped. A value that
/// begins with ".." starts at the installation root.
void readStatusFlags(InstallPaths &paths, int argc, char **argv);
