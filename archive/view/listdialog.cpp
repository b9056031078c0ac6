// SPDX-License-Identifier: GPL-3.0-or-later
#include "listdialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QLabel>
#include <QTableWidget>
#include <QVBoxLayout>

namespace ork2 {

ListDialog::ListDialog(const QString &title, const QString &note, const QStringList &columns,
    const QList<QStringList> &rows, QWidget *parent)
    : QDialog(parent)
{
    setWindowTitle(title);
    resize(720, 420);
    auto *layout = new QVBoxLayout(this);
    auto *label = new QLabel(note);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    layout->addWidget(label);
    auto *table = new QTableWidget(static_cast<int>(rows.size()), static_cast<int>(columns.size()));
    table->setHorizontalHeaderLabels(columns);
    table->setAccessibleName(title);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setAlternatingRowColors(true);
    table->verticalHeader()->hide();
    for (int row = 0; row < table->rowCount(); ++row) {
        for (int column = 0; column < table->columnCount(); ++column) {
            table->setItem(row, column, new QTableWidgetItem(rows.at(row).value(column)));
        }
    }
    table->resizeColumnsToContents();
    table->horizontalHeader()->setStretchLastSection(true);
    layout->addWidget(table);
    auto *buttons = new QDialogButtonBox;
    buttons->addButton(QStringLiteral("Закрыть"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

} // namespace ork2
