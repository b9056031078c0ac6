// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "counts.h"

#include <QTableWidget>

namespace ork2 {

// Shows the counts of the visible range.
class CountsTable : public QTableWidget
{
    Q_OBJECT

public:
    explicit CountsTable(QWidget *parent = nullptr);

    void show(const Counts &counts);

private:
    void addRow(const QString &name);
    void setRow(int row, const QString &first, const QString &second);
};

// «3 ч 05 мин» or «12 мин».
[[nodiscard]] QString durationText(qint64 minutes);

} // namespace ork2
