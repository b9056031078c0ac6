// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

namespace ork2 {

inline constexpr int kTenMinutes = 600; // widths of the chart's time window, in seconds
inline constexpr int kOneHour = 3600;
inline constexpr int kThreeHours = 10800;

// The period shown in the chart, and the title of the chart.
struct TimeWindow
{
    int seconds;
    QString chartName;
};

[[nodiscard]] TimeWindow firstTimeWindow();
// 10 minutes, 1 hour, 3 hours, 10 minutes; std::nullopt for any other width.
[[nodiscard]] std::optional<TimeWindow> nextTimeWindow(int seconds);

} // namespace ork2
