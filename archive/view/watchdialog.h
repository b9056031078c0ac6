// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ceilingwatch.h"

#include <QDialog>

class QCheckBox;
class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace ork2 {

// Settings of the watch.
class WatchDialog : public QDialog
{
    Q_OBJECT

public:
    explicit WatchDialog(const WatchSettings &settings, QWidget *parent = nullptr);

    [[nodiscard]] WatchSettings settings() const;

Q_SIGNALS:
    void testRequested();

private:
    void check();

    QCheckBox *m_enabled;
    QLineEdit *m_thresholds;
    QSpinBox *m_hysteresis;
    QLabel *m_error;
    QDialogButtonBox *m_buttons;
};

inline constexpr int kHighestThreshold = 3000; // metres
inline constexpr int kMaxThresholds = 6;

// Heights in metres, separated by commas or spaces; empty if the text is not valid.
[[nodiscard]] QList<int> thresholdsOf(const QString &text);
[[nodiscard]] QString thresholdsText(const QList<int> &thresholds);

} // namespace ork2
