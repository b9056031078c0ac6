// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCalendarWidget>
#include <QSet>

namespace ork2 {

// A calendar that marks the days with data by a bar and bold figures; the others are pale.
class MonthCalendar : public QCalendarWidget
{
    Q_OBJECT

public:
    explicit MonthCalendar(QWidget *parent = nullptr);

    void setMarkedDays(const QList<QDate> &days);

protected:
    void paintCell(QPainter *painter, const QRect &rect, QDate date) const override;

private:
    QSet<QDate> m_marked;
};

} // namespace ork2
