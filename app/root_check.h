// The start-up check: the tool runs inside an installation of the suite only.
#pragma once

/// Whether the installation root is found. When it is not, prints what was tried.
///
/// The message goes to the formatted print as its format, as the suite's other tools do it: a "%"
/// in a path is a conversion to it, which finds no value (see printAsFormat).
bool checkInstallRoot(int argc, char **argv);
