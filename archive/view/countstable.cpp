// SPDX-License-Identifier: GPL-3.0-or-later
#include "countstable.h"

#include <QHeaderView>

namespace ork2 {

namespace {

constexpr qint64 kHourMinutes = 60;
constexpr qint64 kDayMinutes = 1440;
enum Column { Name, First, Second };

QString heightText(std::optional<int> height)
{
    return height ? QString::number(*height) : QStringLiteral("–");
}

} // namespace

QString durationText(qint64 minutes)
{
    if (minutes < kHourMinutes) {
        return QStringLiteral("%1 мин").arg(minutes);
    }
    if (minutes < kDayMinutes) {
        return QStringLiteral("%1 ч %2 мин")
            .arg(minutes / kHourMinutes)
            .arg(minutes % kHourMinutes, 2, 10, QChar(u'0'));
    }
    return QStringLiteral("%1 сут %2 ч")
        .arg(minutes / kDayMinutes)
        .arg(minutes % kDayMinutes / kHourMinutes);
}

CountsTable::CountsTable(QWidget *parent)
    : QTableWidget(0, 3, parent)
{
    setHorizontalHeaderLabels({QString(), QStringLiteral("Слой 1"), QStringLiteral("Слой 2")});
    setAccessibleName(QStringLiteral("Подсчёт за видимый промежуток"));
    for (const char *name : {"Наименьшая, м", "Медиана, м", "Наибольшая, м"}) {
        addRow(QString::fromUtf8(name));
    }
    for (const int height : kCountedHeights) {
        addRow(QStringLiteral("Ниже %1 м").arg(height));
    }
    for (const char *name : {"Облаков нет", "Коды прибора", "Нет данных", "Резервный канал"}) {
        addRow(QString::fromUtf8(name));
    }
    // The minutes are those of both layers.
    for (int row = 3; row < rowCount(); ++row) {
        setSpan(row, First, 1, 2);
    }
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    horizontalHeader()->setSectionResizeMode(Name, QHeaderView::Stretch);
    horizontalHeader()->setHighlightSections(false);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::NoSelection);
    setTabKeyNavigation(false);
    setShowGrid(false);
    setAlternatingRowColors(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFrameShape(QFrame::NoFrame);
    setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
}

void CountsTable::addRow(const QString &name)
{
    const int row = rowCount();
    insertRow(row);
    setItem(row, Name, new QTableWidgetItem(name));
    for (const int column : {First, Second}) {
        auto *item = new QTableWidgetItem;
        item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        setItem(row, column, item);
    }
}

void CountsTable::setRow(int row, const QString &first, const QString &second)
{
    item(row, First)->setText(first);
    item(row, Second)->setText(second);
}

void CountsTable::show(const Counts &counts)
{
    int row = 0;
    setRow(row++, heightText(counts.first.lowest), heightText(counts.second.lowest));
    setRow(row++, heightText(counts.first.median), heightText(counts.second.median));
    setRow(row++, heightText(counts.first.highest), heightText(counts.second.highest));
    for (const qint64 minutes : counts.below) {
        setRow(row++, durationText(minutes), {});
    }
    for (const qint64 minutes : {counts.noCloud, counts.codes, counts.missing, counts.reserve}) {
        setRow(row++, durationText(minutes), {});
    }
}

} // namespace ork2
