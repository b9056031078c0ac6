// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "historyplottable.h"

namespace ork2 {

enum class Layer { First, Second };

// The heights of one layer as marks. Marks that share a pixel are drawn once. If a pixel is long,
// the screen shows bars instead of marks; exports always show marks. Heights above the scale are
// marks on its upper edge. The value axis is in metres.
class LayerPlottable : public HistoryPlottable
{
    Q_OBJECT

public:
    // The history must outlive the plottable. The plot owns the plottable.
    LayerPlottable(QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history, Layer layer);

    void setColors(const QColor &fill, const QColor &background);
    // Draws marks and no bars, as in exports.
    void setAlwaysMarks(bool always) { m_alwaysMarks = always; }

protected:
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    class Grid;

    void drawMarks(QCPPainter &painter, const Grid &grid) const;
    void drawMarksAsPixels(QCPPainter &painter, const Grid &grid) const;
    void drawBars(QCPPainter &painter, const Grid &grid) const;
    void drawMark(QPainter &painter, QPointF place) const;
    void drawAboveMark(QPainter &painter, QPointF tip) const;
    void preparePainter(QPainter &painter) const;
    template <typename Function> [[nodiscard]] QImage stamp(double scale, Function function) const;

    template <typename Function> void forEachHeight(Function function) const;
    template <typename Function> void forEachColumn(const Grid &grid, Function function) const;

    Layer m_layer;
    QColor m_fill;
    QColor m_outline;
    QColor m_background;
    bool m_alwaysMarks = false;
};

} // namespace ork2
