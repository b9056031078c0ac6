// SPDX-License-Identifier: GPL-3.0-or-later
#include "rangetexts.h"

#include <QLocale>

namespace ork2 {

QString datesText(QDate from, QDate to)
{
    const QLocale russian(QLocale::Russian);
    QString last = russian.toString(to, QStringLiteral("d MMMM yyyy 'г.'"));
    if (from == to) {
        return last;
    }
    const QString format =
        from.year() == to.year() ? QStringLiteral("d MMMM") : QStringLiteral("d MMMM yyyy 'г.'");
    return QStringLiteral("%1 – %2").arg(russian.toString(from, format), last);
}

QString chartTitle(int unit, QDate from, QDate to)
{
    return QStringLiteral("ОРК-2 N%1, %2").arg(QString::number(unit), datesText(from, to));
}

} // namespace ork2
