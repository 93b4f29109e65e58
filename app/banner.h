// The banner and the usage text.
#pragma once

/// Prints the first four lines of every run: name, version, and what the program does.
void printBanner();

/// Prints options and examples, for too few arguments. The text is frozen, its blanks included.
void printUsage();
