// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QScatterSeries>

namespace ork2 {
inline constexpr int kSeriesCapacity = 10320; // points, one every 10 s: 28 hours 40 minutes
}

// Adds the heights of one layer to a scatter series of the chart. The points are stored only there.
// Main thread.
class UiData : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QScatterSeries *xy READ xy WRITE setXy NOTIFY xyChanged)
    Q_PROPERTY(qreal xmin READ xmin NOTIFY xminChanged)
    Q_PROPERTY(qreal xmax READ xmax NOTIFY xmaxChanged)
    Q_PROPERTY(qreal ymin READ ymin NOTIFY yminChanged)
    Q_PROPERTY(qreal ymax READ ymax NOTIFY ymaxChanged)

public:
    explicit UiData(QObject *parent = nullptr);

    [[nodiscard]] QScatterSeries *xy() const;
    // Does not take ownership; a replaced series is deleted only if this object is its parent.
    void setXy(QScatterSeries *series);
    [[nodiscard]] qreal xmin() const { return m_xmin; }
    [[nodiscard]] qreal xmax() const { return m_xmax; }
    [[nodiscard]] qreal ymin() const { return m_ymin; }
    [[nodiscard]] qreal ymax() const { return m_ymax; }

Q_SIGNALS:
    void xyChanged();
    void xminChanged();
    void xmaxChanged();
    void yminChanged();
    void ymaxChanged();
    void removeGPoints(); // the series contains more points than kSeriesCapacity

public Q_SLOTS:
    // x in milliseconds since the epoch, y in metres. Does nothing if no series is set.
    void newData(qreal x, qreal y);

private:
    QPointer<QScatterSeries> m_series;
    // Exposed to the QML documents; always 0.
    qreal m_xmin = 0;
    qreal m_xmax = 0;
    qreal m_ymin = 0;
    qreal m_ymax = 0;
};
