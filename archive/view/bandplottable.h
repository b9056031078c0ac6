// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chartstyle.h"
#include "historyplottable.h"

namespace ork2 {

// Four rows below the heights: no cloud, no data, reserve channel and codes of the instrument. Each
// has its own row and pattern, so that they also differ in black and white print. The value axis
// has the range 0 to kBandRows, row 0 at the top if it is reversed.
class BandPlottable : public HistoryPlottable
{
    Q_OBJECT

public:
    enum Row { NoCloud, NoData, Reserve, Codes };
    static constexpr int kBandRows = 4;

    using HistoryPlottable::HistoryPlottable;

    void setStyle(const ChartStyle &style) { m_style = style; }
    // Minutes later than this (seconds since the epoch) are not missing.
    void setNow(qint64 now) { m_now = now; }
    [[nodiscard]] static QString rowName(Row row);

protected:
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    class Spans;

    void drawSpan(QCPPainter &painter, Row row, double from, double to, int code) const;

    ChartStyle m_style;
    qint64 m_now = 0;
};

} // namespace ork2
