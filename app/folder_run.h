// The run on one folder: its sweep and its report.
#pragma once

#include <QString>

/// Sweeps `folder` with an age limit of `daysOld` days and prints the report: start, count and KiB,
/// errors, with `verbose` the decisions, free drive space. Parameters and printed texts are frozen.
///
/// Returns false, after just a warning, when the folder does not exist. Files that cannot be
/// deleted are reported but are not a failure. All runs share the 5 seconds between progress lines.
bool runFolder(const QString &folder, const qint32 &daysOld, const bool &verbose);
