// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chartstyle.h"
#include "history.h"

#include "plot.h"

namespace ork2 {

// Four rows below the heights: no cloud, no data, reserve channel and codes of the instrument. Each
// has its own row and pattern, so that they also differ in black and white print. The value axis
// has the range 0 to kBandRows, row 0 at the top if it is reversed.
class BandPlottable : public QCPAbstractPlottable
{
    Q_OBJECT

public:
    enum Row { NoCloud, NoData, Reserve, Codes };
    static constexpr int kBandRows = 4;

    // The history must outlive the plottable. The plot owns the plottable.
    BandPlottable(QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history);

    void setStyle(const ChartStyle &style) { m_style = style; }
    // Minutes later than this (seconds since the epoch) are not missing.
    void setNow(qint64 now) { m_now = now; }
    [[nodiscard]] static QString rowName(Row row);

    double selectTest(const QPointF &pos, bool onlySelectable, QVariant *details) const override;
    QCPRange getKeyRange(bool &found, QCP::SignDomain domain) const override;
    QCPRange getValueRange(
        bool &found, QCP::SignDomain domain, const QCPRange &keyRange) const override;

protected:
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    class Spans;

    void drawSpan(QCPPainter &painter, Row row, double from, double to, int code) const;

    const History &m_history;
    ChartStyle m_style;
    qint64 m_now = 0;
};

} // namespace ork2
