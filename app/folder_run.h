// The run on one concrete folder: its sweep and its report.
#pragma once

#include "sweep/file_time.h"

#include <QString>

/// When the last progress line of this process was printed; carried on from folder to folder.
extern TimeStamp progressStamp; // NOLINT: one for all folders of a run, by design

/// Deletes the files below `folder` that are older than `daysOld` days and prints the report:
/// start, count and KiB, errors, with `verbose` every decision, free drive space.
///
/// Returns false, after a warning and nothing else, when the folder does not exist. What could not
/// be deleted is part of the report and no failure.
bool runFolder(const QString &folder, const qint32 &daysOld, const bool &verbose);
