// Numbers as the reports print them.
#pragma once

#include <QString>

/// The number in decimal with a blank between groups of three digits. At most three groups are
/// split off; what stands in front of them stays one block. A block of exactly 1000 is deliberately
/// not split either:
///
///     1000 gives 1000; 1001 gives 1 001; 1000000 gives 1000 000; -1500 gives -1 500
QString formatGroupedNumber(qint64 number);
