// What the process's surroundings tell: the folder of the running program, and the environment.
//
// The program's folder is 8-bit text in the system's code page, cut at 250 bytes without a trace.
#pragma once

#include "text/fixed_string.h"

/// Fills `folder` with the folder of the running program and its closing backslash, from the name
/// of its module (GetModuleFileNameA); when the platform does not tell, from `argv0`, which may be
/// null. False, and an empty folder, when neither is there.
bool appFolder(const char *argv0, FixedNarrowString250 &folder);

/// The path of a program as a process got it, made absolute: a relative path with a folder in it
/// is put behind `currentFolder`, which each "..\" in it takes up one folder. Text in front of a
/// later "..\" is dropped with it. Paths of fewer than 4 bytes give an empty one; bare names, paths
/// with a drive and such that begin with a backslash stay as they are, and every path does when
/// the current folder has 3 bytes or fewer.
///
///     a\..\b\x.exe in X:\suite gives X:\b\x.exe
FixedNarrowString250 absoluteProgramPath(FixedNarrowString250 path,
                                         FixedNarrowString250 currentFolder);

/// The folder above a folder or file, with its closing backslash. Drives, bare network shares
/// and names are not cut, only closed; a path of fewer than 3 bytes stays as it is. Changes `path`
/// and returns a copy.
///
///     X:\a\b\ gives X:\a\; X:\ and \\srv\share\ stay as they are
FixedNarrowString250 parentFolderNarrow(FixedNarrowString250 &path);

/// The value of an environment variable, empty when it is not set (_wdupenv_s). "ProgramFiles", in
/// any case, asks for "ProgramW6432" first: the folder of the 64-bit programs.
QString getEnv(const QString &name);
