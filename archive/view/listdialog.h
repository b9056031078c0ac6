// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>
#include <QStringList>

namespace ork2 {

// A table that is only read, for example the journal. Resizable, closed by Esc.
class ListDialog : public QDialog
{
    Q_OBJECT

public:
    // note is shown above the table.
    ListDialog(const QString &title, const QString &note, const QStringList &columns,
        const QList<QStringList> &rows, QWidget *parent = nullptr);
};

} // namespace ork2
