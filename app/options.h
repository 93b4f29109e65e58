// The options of the command line.
#pragma once

#include <QString>

/// What the options say. The days are not checked: 0 and less delete every file, whatever its age,
/// down to -1491308; below that the minutes overflow.
struct Options
{
    qint32 daysOld = 14;
    bool verbose = false;
    QString directory; // empty when no argument names one
};

/// Reads the arguments from argv[1] on, as Latin-1. An argument that is no option is the directory;
/// the last one wins. So is a last -do without a value. Returns null, or the value of -do that is
/// not a number; what stands behind it is not read.
const char *readOptions(int argc, char **argv, Options &options);
