// The start-up check: the tool runs only with an installation of the suite.
#pragma once

/// Whether the installation root is found. When it is not, prints what was tried.
///
/// Frozen: prints the message as a format, so a "%" in a path is a conversion without a value (see
/// printAsFormat).
bool checkInstallRoot(int argc, char **argv);
