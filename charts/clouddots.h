// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QQuickItem>
#include <QScatterSeries>
#include <QtQml/qqmlregistration.h>

// Draws the points of a scatter series in its plot area as round dots that glow in the colour of
// the series. The points are (ms since the epoch, metres). Qt Charts would create a graphics item
// for each point, and a new point of a long series would stall the window. Main thread, except
// updatePaintNode().
class CloudDots : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    // Not owned. Nothing is drawn without it, or while the series is not visible.
    Q_PROPERTY(QScatterSeries *series READ series WRITE setSeries NOTIFY seriesChanged)
    // The chart of the series, not owned: from now on it is not drawn. Qt Charts draws a hidden
    // chart, too.
    Q_PROPERTY(
        QQuickItem *hiddenChart READ hiddenChart WRITE setHiddenChart NOTIFY hiddenChartChanged)
    // Time at the right edge, ms since the epoch.
    Q_PROPERTY(qreal latest MEMBER m_latest WRITE setLatest NOTIFY latestChanged)
    // Share of the width that one millisecond takes.
    Q_PROPERTY(qreal timeScale MEMBER m_timeScale WRITE setTimeScale NOTIFY timeScaleChanged)
    // Heights at the lower and upper edge, metres.
    Q_PROPERTY(qreal lowest MEMBER m_lowest WRITE setLowest NOTIFY lowestChanged)
    Q_PROPERTY(qreal highest MEMBER m_highest WRITE setHighest NOTIFY highestChanged)

public:
    explicit CloudDots(QQuickItem *parent = nullptr);

    [[nodiscard]] QScatterSeries *series() const { return m_series; }
    void setSeries(QScatterSeries *series);
    [[nodiscard]] QQuickItem *hiddenChart() const { return m_hiddenChart; }
    void setHiddenChart(QQuickItem *chart);
    void setLatest(qreal time);
    void setTimeScale(qreal scale);
    void setLowest(qreal height);
    void setHighest(qreal height);

Q_SIGNALS:
    void seriesChanged();
    void hiddenChartChanged();
    void latestChanged();
    void timeScaleChanged();
    void lowestChanged();
    void highestChanged();

protected:
    // Called in the render thread while the main thread is blocked.
    QSGNode *updatePaintNode(QSGNode *node, UpdatePaintNodeData *data) override;
    void geometryChange(const QRectF &newGeometry, const QRectF &oldGeometry) override;
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    QPointer<QScatterSeries> m_series;
    QPointer<QQuickItem> m_hiddenChart;
    qreal m_latest = 0;
    qreal m_timeScale = 0;
    qreal m_lowest = 0;
    qreal m_highest = 0;
};
