// SPDX-License-Identifier: GPL-3.0-or-later
#include "uidata.h"

#include <QDebug>

UiData::UiData(QObject *parent)
    : QObject(parent)
{ }

QScatterSeries *UiData::xy() const
{
    return m_series;
}

void UiData::setXy(QScatterSeries *series)
{
    if (m_series == series) {
        return;
    }
    if (m_series != nullptr && m_series->parent() == this) {
        delete m_series;
    }
    m_series = series;
    Q_EMIT xyChanged();
}

void UiData::newData(qreal x, qreal y)
{
    if (m_series == nullptr) {
        return;
    }
    m_series->append(x, y);
    qDebug() << "mXy count: " << m_series->count();
    if (m_series->count() > ork2::kSeriesCapacity) {
        Q_EMIT removeGPoints();
    }
}
