// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include "plot.h"

namespace ork2 {

// Draws a history directly, without a copy in the containers of QCustomPlot. Cannot be selected and
// does not take part in the automatic choice of a range. The key axis is the time in seconds since
// the epoch.
class HistoryPlottable : public QCPAbstractPlottable
{
    Q_OBJECT

public:
    // The history must outlive the plottable. The plot owns the plottable.
    HistoryPlottable(QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history);

    double selectTest(const QPointF &pos, bool onlySelectable, QVariant *details) const override;
    QCPRange getKeyRange(bool &found, QCP::SignDomain domain) const override;
    QCPRange getValueRange(
        bool &found, QCP::SignDomain domain, const QCPRange &keyRange) const override;

protected:
    [[nodiscard]] const History &history() const { return m_history; }

private:
    const History &m_history;
};

} // namespace ork2
