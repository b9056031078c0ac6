// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <optional>

namespace ork2 {

inline constexpr qint64 kReportSeconds = 600;
inline constexpr int kSteadyTrend = 15;         // metres; a smaller change is no trend
inline constexpr std::size_t kTrendHeights = 5; // fewer heights give no trend

// The lowest base of the last ten minutes, for an observation. Of each minute, the lowest height of
// both layers is used.
struct TenMinutes
{
    qint64 end = 0; // seconds since the epoch; the report covers end - kReportSeconds < time <= end
    int received = 0; // minutes with a line
    int heights = 0;  // of them with a height
    int noCloud = 0;  // of them without cloud
    // Metres. Of an even number of heights, the median is the lower of the two in the middle.
    std::optional<int> median;
    std::optional<int> lowest;
    // Change in ten minutes in metres, positive if the base rises: the median of the slopes between
    // all pairs of heights (Theil-Sen estimator), so that a single false height does not change it.
    std::optional<int> trend;
};

[[nodiscard]] TenMinutes reportTenMinutes(const History &history, qint64 end);

// Russian texts of the report.
[[nodiscard]] QString trendText(const TenMinutes &report);
// Figure of code table 1600 and METAR group for a height of the report, or for none.
[[nodiscard]] QString figureText(const TenMinutes &report, std::optional<int> height);
[[nodiscard]] QString groupText(const TenMinutes &report, std::optional<int> height);
// One line with all values, as copied to the clipboard. timeText names the period.
[[nodiscard]] QString reportText(const TenMinutes &report, const QString &timeText);

} // namespace ork2
