// Numbers as the reports print them. A frozen interface, see CONTRIBUTING.md.
#pragma once

#include <QString>

/// The number in decimal, with a blank between groups of three digits. At most three groups are
/// split off; the digits before them stay together. Frozen: a remaining 1000 is not split:
///
///     1000 returns 1000; 1001 returns 1 001; 1000000 returns 1000 000; -1500 returns -1 500
QString formatGroupedNumber(qint64 number);
