// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// What the heights of both layers say together.
enum class ReadingKind {
    Measured,  // both are readings, or no value
    NoFlash,   // both carry the instrument's code for a lamp that does not flash
    DataError, // both carry the code for a data error
    NotReady,  // both carry the code for data that are not ready
    Other      // a code in one layer only, or a height above the range
};

// The height at which a text is plotted, in metres. A text that is no number counts as 0, and 0 as
// no value (kNoValueHeight).
[[nodiscard]] double plottedHeight(const QString &text);

// Heights in metres, as plotted.
[[nodiscard]] ReadingKind readingKind(double firstLayer, double secondLayer);

} // namespace ork2
