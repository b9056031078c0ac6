// SPDX-License-Identifier: GPL-3.0-or-later
#include "readingkind.h"

#include "frames.h"

#include <cmath>

namespace ork2 {

double plottedHeight(const QString &text)
{
    const double metres = text.toDouble();
    // toDouble() also accepts "nan " and "inf ".
    return metres == 0.0 || !std::isfinite(metres) ? kNoValueHeight : metres;
}

ReadingKind readingKind(double firstLayer, double secondLayer)
{
    const auto whenBoth = [&](ReadingKind kind) {
        return secondLayer == firstLayer ? kind : ReadingKind::Other;
    };
    if (firstLayer == kNoFlashCode) {
        return whenBoth(ReadingKind::NoFlash);
    }
    if (firstLayer == kDataErrorCode) {
        return whenBoth(ReadingKind::DataError);
    }
    if (firstLayer == kNotReadyCode) {
        return whenBoth(ReadingKind::NotReady);
    }
    constexpr double kAboveReadings = kNoValueHeight + 1;
    const bool both = firstLayer < kAboveReadings && secondLayer < kAboveReadings;
    return both ? ReadingKind::Measured : ReadingKind::Other;
}

} // namespace ork2
