// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPointer>
#include <QScatterSeries>

namespace ork2 {
inline constexpr int kSeriesCapacity = 10320; // points; a sample each 10 s: 28 hours 40 minutes
}

// Feeds one layer's heights into one scatter series of the chart; the series is the only store.
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
    void removeGPoints(); // the series holds more points than kSeriesCapacity

public Q_SLOTS:
    // x: milliseconds since the epoch, y: metres. Without a series the sample is dropped.
    void newData(qreal x, qreal y);

private:
    QPointer<QScatterSeries> m_series;
    // The bounds are offered to the documents and stay 0.
    qreal m_xmin = 0;
    qreal m_xmax = 0;
    qreal m_ymin = 0;
    qreal m_ymax = 0;
};
