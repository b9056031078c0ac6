// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

// The header of QCustomPlot uses the keywords of Qt, which this project disables.
// NOLINTBEGIN
#define signals Q_SIGNALS
#define slots Q_SLOTS
#define emit
#define foreach Q_FOREACH
#include <qcustomplot.h>
#undef signals
#undef slots
#undef emit
#undef foreach
// NOLINTEND
