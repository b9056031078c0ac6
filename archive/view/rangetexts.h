// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>

namespace ork2 {

// «22 ноября 2026 г.» or «1 ноября – 22 ноября 2026 г.»
[[nodiscard]] QString datesText(QDate from, QDate to);
// The title of the chart: instrument and dates, both inclusive.
[[nodiscard]] QString chartTitle(int unit, QDate from, QDate to);

} // namespace ork2
