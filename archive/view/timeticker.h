// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "plot.h"
#include <QTimeZone>

namespace ork2 {

// Ticks of a time axis at full local hours or days; the axis is in seconds since the epoch. The
// first tick and each midnight also have the date. setTickCount() limits their number.
class TimeTicker : public QCPAxisTicker
{
public:
    explicit TimeTicker(const QTimeZone &zone);

protected:
    double getTickStep(const QCPRange &range) override;
    int getSubTickCount(double tickStep) override;
    QVector<double> createTickVector(double tickStep, const QCPRange &range) override;
    QString getTickLabel(
        double tick, const QLocale &locale, QChar formatChar, int precision) override;

private:
    [[nodiscard]] QDateTime local(double time) const;
    [[nodiscard]] QVector<double> ticksOfHours(double tickStep, const QCPRange &range) const;
    [[nodiscard]] QVector<double> ticksOfDays(double tickStep, const QCPRange &range) const;

    QTimeZone m_zone;
    double m_step = 0;
    double m_firstTick = 0;
};

} // namespace ork2
