// The command line: banner, usage and options.
#pragma once

#include <QString>

/// What the options say. The days are not checked: 0 and less delete every file, whatever its age.
struct Options
{
    qint32 daysOld = 14;
    bool verbose = false;
    QString directory; // empty when no argument names one
};

void printBanner();
void printUsage();

/// Reads the arguments from argv[1] on, as Latin-1. An argument that is no option is the directory;
/// the last one wins. False, after an error message, when the value of -do is not a number.
bool readOptions(int argc, char **argv, Options &options);
