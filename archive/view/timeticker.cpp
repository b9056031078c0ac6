// SPDX-License-Identifier: GPL-3.0-or-later
#include "timeticker.h"

#include <array>

namespace ork2 {

namespace {

constexpr double kDay = 86400;
constexpr double kMonth = 30 * kDay; // shorter than all months but one; only used to choose a step
constexpr std::array<double, 14> kSteps{60, 120, 300, 600, 1800, 3600, 7200, 3 * 3600, 6 * 3600,
    12 * 3600, kDay, 2 * kDay, 7 * kDay, kMonth};
constexpr int kDaysPerWeekTick = 7;

bool isTickDay(QDate date, double step)
{
    if (step >= kMonth) {
        return date.day() == 1;
    }
    const int days = qRound(step / kDay);
    // Counted from the first of each month; the last days have no tick if the first follows soon.
    return (date.day() - 1) % days == 0 && (days == 1 || date.day() <= 4 * kDaysPerWeekTick);
}

} // namespace

TimeTicker::TimeTicker(const QTimeZone &zone)
    : m_zone(zone)
{ }

double TimeTicker::getTickStep(const QCPRange &range)
{
    const auto step = std::find_if(
        kSteps.begin(), kSteps.end(), [&](double s) { return range.size() / s <= mTickCount; });
    m_step = step != kSteps.end() ? *step : kSteps.back();
    return m_step;
}

int TimeTicker::getSubTickCount(double tickStep)
{
    return tickStep < kDay && qFuzzyCompare(std::fmod(tickStep, 7200.0) + 1, 1.0) ? 1 : 0;
}

QDateTime TimeTicker::local(double time) const
{
    return QDateTime::fromSecsSinceEpoch(static_cast<qint64>(time), m_zone);
}

QVector<double> TimeTicker::ticksOfHours(double tickStep, const QCPRange &range) const
{
    QVector<double> ticks;
    for (QDate date = local(range.lower).date(); date <= local(range.upper).date();
         date = date.addDays(1)) {
        const auto start = static_cast<double>(date.startOfDay(m_zone).toSecsSinceEpoch());
        const auto end = static_cast<double>(date.addDays(1).startOfDay(m_zone).toSecsSinceEpoch());
        const double skipped = std::max(0.0, std::floor((range.lower - start) / tickStep));
        const double first = start + skipped * tickStep;
        const double last = std::min(end, range.upper + tickStep);
        for (int i = 0; first + i * tickStep < last; ++i) {
            ticks.append(first + i * tickStep);
        }
    }
    return ticks;
}

QVector<double> TimeTicker::ticksOfDays(double tickStep, const QCPRange &range) const
{
    QVector<double> ticks;
    for (QDate date = local(range.lower).date(); date <= local(range.upper).date();
         date = date.addDays(1)) {
        if (isTickDay(date, tickStep)) {
            ticks.append(static_cast<double>(date.startOfDay(m_zone).toSecsSinceEpoch()));
        }
    }
    return ticks;
}

QVector<double> TimeTicker::createTickVector(double tickStep, const QCPRange &range)
{
    QVector<double> ticks =
        tickStep < kDay ? ticksOfHours(tickStep, range) : ticksOfDays(tickStep, range);
    const auto first = std::find_if(
        ticks.constBegin(), ticks.constEnd(), [&](double tick) { return tick >= range.lower; });
    m_firstTick = first != ticks.constEnd() ? *first : 0;
    return ticks;
}

QString TimeTicker::getTickLabel(double tick, const QLocale &locale, QChar, int)
{
    const QDateTime time = local(tick);
    if (m_step >= kMonth) {
        return locale.standaloneMonthName(time.date().month(), QLocale::ShortFormat)
            + time.toString(QStringLiteral("\nyyyy"));
    }
    const bool first = qFuzzyCompare(tick, m_firstTick);
    if (m_step >= kDay) {
        return time.toString(first ? QStringLiteral("dd.MM\nyyyy") : QStringLiteral("dd.MM"));
    }
    const bool withDate = first || time.time() == QTime(0, 0);
    return time.toString(withDate ? QStringLiteral("hh:mm\ndd.MM.yyyy") : QStringLiteral("hh:mm"));
}

} // namespace ork2
