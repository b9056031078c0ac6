// SPDX-License-Identifier: GPL-3.0-or-later
#include "monthcalendar.h"

#include "chartstyle.h"

#include <QLocale>
#include <QPainter>
#include <QTextCharFormat>

namespace ork2 {

namespace {

constexpr int kBarHeight = 3; // pixels
constexpr int kBarMargin = 5;
constexpr double kPale = 0.45;

} // namespace

MonthCalendar::MonthCalendar(QWidget *parent)
    : QCalendarWidget(parent)
{
    setLocale(QLocale(QLocale::Russian));
    setFirstDayOfWeek(Qt::Monday);
    setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    setHorizontalHeaderFormat(QCalendarWidget::ShortDayNames);
    setAccessibleName(QStringLiteral("Календарь"));
    // Red names would be hard to read in a dark theme, and the figures below are not red.
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) {
        setWeekdayTextFormat(day, QTextCharFormat());
    }
}

void MonthCalendar::setMarkedDays(const QList<QDate> &days)
{
    m_marked = QSet<QDate>(days.begin(), days.end());
    updateCells();
}

void MonthCalendar::paintCell(QPainter *painter, const QRect &rect, QDate date) const
{
    const bool selected = date == selectedDate();
    const bool marked = m_marked.contains(date);
    const QColor back = palette().color(selected ? QPalette::Highlight : QPalette::Base);
    QColor text = palette().color(selected ? QPalette::HighlightedText : QPalette::Text);
    if (!selected && (!marked || date.month() != monthShown())) {
        text = ChartStyle::blend(text, back, kPale);
    }
    painter->save();
    painter->fillRect(rect, back);
    QFont cellFont = font();
    cellFont.setBold(marked);
    painter->setFont(cellFont);
    painter->setPen(text);
    painter->drawText(rect, Qt::AlignCenter, QString::number(date.day()));
    if (marked) {
        const QRect bar(rect.left() + kBarMargin, rect.bottom() - kBarHeight,
            rect.width() - 2 * kBarMargin, kBarHeight);
        painter->fillRect(bar, selected ? text : ChartStyle().firstLayer);
    }
    painter->restore();
}

} // namespace ork2
