// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;
class QPushButton;

namespace ork2 {

// The coloured strip of an alarm, shown until it is acknowledged.
class WatchBanner : public QFrame
{
    Q_OBJECT

public:
    explicit WatchBanner(QWidget *parent = nullptr);

    void show(const QString &text, bool silence);
    [[nodiscard]] QString text() const;

Q_SIGNALS:
    void acknowledged();

private:
    QLabel *m_text;
    QPushButton *m_button;
};

} // namespace ork2
