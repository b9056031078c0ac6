// SPDX-License-Identifier: GPL-3.0-or-later
#include "tenminutes.h"

#include "codetables.h"
#include "counts.h"

#include <cmath>

namespace ork2 {

namespace {

struct TimedHeight
{
    qint64 time;
    int height;
};

template <typename Number> Number lowerMedian(std::vector<Number> values)
{
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>((values.size() - 1) / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

std::optional<int> trendOf(const std::vector<TimedHeight> &heights)
{
    if (heights.size() < kTrendHeights) {
        return std::nullopt;
    }
    std::vector<double> slopes; // metres per second
    for (auto later = heights.begin(); later != heights.end(); ++later) {
        for (auto earlier = heights.begin(); earlier != later; ++earlier) {
            slopes.push_back(static_cast<double>(later->height - earlier->height)
                / static_cast<double>(later->time - earlier->time));
        }
    }
    return static_cast<int>(std::lround(lowerMedian(slopes) * static_cast<double>(kReportSeconds)));
}

QString metresText(std::optional<int> height)
{
    return height ? QStringLiteral("%1 м").arg(*height) : QStringLiteral("нет");
}

bool isClear(const TenMinutes &report)
{
    return report.heights == 0 && report.noCloud > 0;
}

} // namespace

TenMinutes reportTenMinutes(const History &history, qint64 end)
{
    TenMinutes report;
    report.end = end;
    std::vector<TimedHeight> heights;
    history.forEachMinute(end - kReportSeconds + 1, end + 1, [&](const Sample &sample) {
        ++report.received;
        report.noCloud += isNoCloud(sample) ? 1 : 0;
        if (const auto base = lowestBase(sample)) {
            heights.push_back({sample.time, *base});
        }
    });
    report.heights = static_cast<int>(heights.size());
    if (!heights.empty()) {
        std::vector<int> metres;
        metres.reserve(heights.size());
        for (const TimedHeight &height : heights) {
            metres.push_back(height.height);
        }
        report.lowest = *std::min_element(metres.begin(), metres.end());
        report.median = lowerMedian(metres);
        report.trend = trendOf(heights);
    }
    return report;
}

QString trendText(const TenMinutes &report)
{
    if (!report.trend) {
        return QStringLiteral("нет");
    }
    if (std::abs(*report.trend) < kSteadyTrend) {
        return QStringLiteral("без перемен");
    }
    return *report.trend > 0 ? QStringLiteral("повышается на %1 м за 10 минут").arg(*report.trend)
                             : QStringLiteral("понижается на %1 м за 10 минут").arg(-*report.trend);
}

QString figureText(const TenMinutes &report, std::optional<int> height)
{
    if (height) {
        return cloudBaseFigure(*height);
    }
    return isClear(report) ? kNoCloudFigure : kUnknownBaseFigure;
}

QString groupText(const TenMinutes &report, std::optional<int> height)
{
    if (height) {
        return metarCloudGroup(*height);
    }
    return (isClear(report) ? kMetarNoCloud : kMetarUnknown).toString();
}

QString reportText(const TenMinutes &report, const QString &timeText)
{
    if (isClear(report)) {
        return QStringLiteral("%1: облаков нет; h = %2, %3")
            .arg(timeText, figureText(report, {}), groupText(report, {}));
    }
    if (!report.median) {
        return QStringLiteral("%1: высоты нет").arg(timeText);
    }
    return QStringLiteral("%1: медиана %2, h = %3, %4; наименьшая %5, h = %6, %7; тенденция: %8")
        .arg(timeText, metresText(report.median), figureText(report, report.median),
            groupText(report, report.median), metresText(report.lowest),
            figureText(report, report.lowest), groupText(report, report.lowest), trendText(report));
}

} // namespace ork2
