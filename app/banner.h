// What the program says of itself.
#pragma once

/// Prints the four lines with which every run begins: name, version and what the program does.
void printBanner();

/// Prints the options, with examples; for a command line of too few arguments.
void printUsage();
