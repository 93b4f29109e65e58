// The run on one folder: its sweep and its report.
#pragma once

#include <QString>

/// Sweeps `folder` with an age limit of `daysOld` days and prints the report: start, count and KiB,
/// errors, with `verbose` the decisions, free drive space.
///
/// Returns false when the folder does not exist, after printing just a warning. Files that cannot
/// be deleted are reported but are not a failure. Parameters and printed texts are fixed.
bool runFolder(const QString &folder, const qint32 &daysOld, const bool &verbose);
