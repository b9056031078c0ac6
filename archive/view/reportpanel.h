// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tenminutes.h"

#include <QTimeZone>
#include <QWidget>

class QLabel;

namespace ork2 {

// The report of the last ten minutes, with a button that copies it.
class ReportPanel : public QWidget
{
    Q_OBJECT

public:
    explicit ReportPanel(const QTimeZone &zone, QWidget *parent = nullptr);

    void show(const TenMinutes &report);
    void copy() const;

Q_SIGNALS:
    void copyRequested();

private:
    [[nodiscard]] QString timeText() const;

    QTimeZone m_zone;
    TenMinutes m_report;
    QLabel *m_text;
};

} // namespace ork2
