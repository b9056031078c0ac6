// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <array>
#include <optional>

namespace ork2 {

inline constexpr std::array<int, 6> kCountedHeights{60, 100, 150, 200, 300, 500}; // metres

struct LayerCounts
{
    qint64 minutes = 0; // with a height
    // Metres. Of an even number of minutes, the median is the lower of the two middle heights.
    std::optional<int> lowest;
    std::optional<int> median;
    std::optional<int> highest;
};

// All in minutes, but for the heights of the layers. Of several lines in a minute, only the last
// one is counted.
struct Counts
{
    qint64 minutes = 0; // of the range, up to now
    LayerCounts first;
    LayerCounts second;
    std::array<qint64, kCountedHeights.size()> below{}; // the lowest base is below kCountedHeights
    qint64 noCloud = 0;                                 // in both layers
    qint64 codes = 0;                                   // in either layer
    qint64 missing = 0;                                 // without a line
    qint64 reserve = 0;
};

// The lowest height of both layers, if any.
[[nodiscard]] std::optional<int> lowestBase(const Sample &sample);
[[nodiscard]] bool isNoCloud(const Sample &sample);
[[nodiscard]] bool hasCode(const Sample &sample);

// Counts from <= time < to; all times in seconds since the epoch. The minute of now is counted only
// if it has a line.
[[nodiscard]] Counts countMinutes(const History &history, qint64 from, qint64 to, qint64 now);

} // namespace ork2
