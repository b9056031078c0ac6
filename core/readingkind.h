// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// The meaning of the heights of both layers.
enum class ReadingKind {
    Measured,  // each is a height or "no value"
    NoFlash,   // both are the code for a lamp that does not flash
    DataError, // both are the code for a data error
    NotReady,  // both are the code for data that is not ready
    Other      // a code in one layer only, or a height out of range
};

// Returns the height in metres at which a text is plotted. A text that is not a number is treated
// as 0, and 0 as no value (kNoValueHeight).
[[nodiscard]] double plottedHeight(const QString &text);

// Heights in metres, as plotted.
[[nodiscard]] ReadingKind readingKind(double firstLayer, double secondLayer);

} // namespace ork2
