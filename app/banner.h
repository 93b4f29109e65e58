// The banner and the usage text.
#pragma once

/// Prints the first four lines of every run: name, version, and what the program does.
void printBanner();

/// Prints the options and examples, for a command line with too few arguments.
void printUsage();
