// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include "plot.h"

namespace ork2 {

enum class Layer { First, Second };

// The heights of one layer as marks, read directly from the history. On the screen, marks that
// share a pixel are drawn once; in exports, each one is drawn. Heights above the scale are marks on
// its upper edge. The key axis is the time in seconds since the epoch, the value axis metres.
class LayerPlottable : public QCPAbstractPlottable
{
    Q_OBJECT

public:
    // The history must outlive the plottable. The plot owns the plottable.
    LayerPlottable(QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history, Layer layer);

    void setColors(const QColor &fill, const QColor &background);
    // Draws every mark, as in exports.
    void setEveryMark(bool every) { m_everyMark = every; }

    double selectTest(const QPointF &pos, bool onlySelectable, QVariant *details) const override;
    QCPRange getKeyRange(bool &found, QCP::SignDomain domain) const override;
    QCPRange getValueRange(
        bool &found, QCP::SignDomain domain, const QCPRange &keyRange) const override;

protected:
    void draw(QCPPainter *painter) override;
    void drawLegendIcon(QCPPainter *painter, const QRectF &rect) const override;

private:
    struct Rows;

    void drawMarks(QCPPainter &painter, const Rows &rows) const;
    void drawColumns(QCPPainter &painter, const Rows &rows) const;
    void drawMark(QCPPainter &painter, QPointF place) const;
    void drawAboveMark(QCPPainter &painter, double x) const;
    void preparePainter(QCPPainter &painter) const;

    template <typename Function> void forEachHeight(Function function) const;

    const History &m_history;
    Layer m_layer;
    QColor m_fill;
    QColor m_outline;
    QColor m_background;
    bool m_everyMark = false;
};

} // namespace ork2
