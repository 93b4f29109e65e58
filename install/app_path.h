// The running program's folder, and environment variables. A frozen interface, see CONTRIBUTING.md,
// except absoluteProgramPath.
//
// The program's path is 8-bit text in the system's code page, silently truncated at 250 bytes
// before its folder is taken.
#pragma once

#include "text/fixed_string.h"

/// Fills `folder` with the folder of the running program, with a trailing backslash. It comes from
/// the name of the program's module (GetModuleFileNameA) or, when that fails, from
/// `argv0`. False, with an empty folder, when Windows does not tell and `argv0` is null or has
/// fewer than 4 bytes.
bool appFolder(const char *argv0, FixedNarrowString250 &folder);

/// The absolute path of a program that was started by `path`. A relative path with a folder in it
/// is appended to `currentFolder`. Each "..\" in it goes up one folder first; text before a later
/// "..\" is dropped.
///
/// Empty for paths of fewer than 4 bytes. Returned unchanged: bare names, paths with a drive or a
/// first backslash, and every path when the current folder has 3 bytes or fewer.
///
///     a\..\b\x.exe in X:\suite returns X:\b\x.exe
FixedNarrowString250 absoluteProgramPath(FixedNarrowString250 path,
                                         FixedNarrowString250 currentFolder);

/// The folder above a folder or file, with a trailing backslash. Drives, bare network shares and
/// names are not cut and only get the backslash. Paths of fewer than 3 bytes are returned
/// unchanged. Changes `path` and returns a copy.
///
///     X:\a\b\ returns X:\a\ (X:\ and \\srv\share\ are returned unchanged)
FixedNarrowString250 parentFolderNarrow(FixedNarrowString250 &path);

/// The value of an environment variable, empty when it is not set (_wdupenv_s). For "ProgramFiles",
/// in any case, "ProgramW6432" is tried first, the folder of the 64-bit programs.
QString getEnv(const QString &name);
