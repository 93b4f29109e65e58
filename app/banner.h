// What the program says of itself.
#pragma once

void printBanner();
void printUsage();
