// SPDX-License-Identifier: GPL-3.0-or-later
#include "historyplottable.h"

namespace ork2 {

HistoryPlottable::HistoryPlottable(QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history)
    : QCPAbstractPlottable(keyAxis, valueAxis)
    , m_history(history)
{ }

double HistoryPlottable::selectTest(const QPointF &, bool, QVariant *) const
{
    return -1;
}

QCPRange HistoryPlottable::getKeyRange(bool &found, QCP::SignDomain) const
{
    found = false;
    return {};
}

QCPRange HistoryPlottable::getValueRange(bool &found, QCP::SignDomain, const QCPRange &) const
{
    found = false;
    return {};
}

} // namespace ork2
