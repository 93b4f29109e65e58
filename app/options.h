// The options of the command line.
#pragma once

#include <QString>

/// The options. 0 days or less delete every file, until the minutes wrap (daysToMinutes).
struct Options
{
    qint32 daysOld = 14;
    bool verbose = false;
    QString directory; // empty when no argument names one
};

/// Reads the arguments from argv[1] on, as Latin-1. Options are case-insensitive. Any other
/// argument is the directory, also a final -do without a value; the last one wins.
///
/// Returns null, or the first value of -do that is not a whole 32-bit number; later arguments are
/// then not read.
const char *readOptions(int argc, char **argv, Options &options);
