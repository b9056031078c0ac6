// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace ork2 {

// Figure h, height above the surface of the base of the lowest cloud.
// Source: WMO-No. 306, Manual on Codes, Volume I.1, code table 1600: 0 (0 to 50 m), 1 (50 to
// 100 m), 2 (100 to 200 m), 3 (200 to 300 m), 4 (300 to 600 m), 5 (600 to 1000 m), 6 (1000 to
// 1500 m), 7 (1500 to 2000 m), 8 (2000 to 2500 m), 9 (2500 m or more, or no clouds); a height equal
// to a limit belongs to the higher figure.
[[nodiscard]] QChar cloudBaseFigure(int metres);
inline constexpr QChar kNoCloudFigure = u'9';
inline constexpr QChar kUnknownBaseFigure = u'/'; // not known, or below the surface of the station

// The cloud group of METAR for a measured base whose amount is not known: "///" for the amount and
// the height in hundreds of feet, rounded down. 1 foot is 0.3048 m, so that a group never names a
// greater height than the measured one. The regulation speaks of steps of 30 m (100 ft), which
// would make 002 of 60 m (196.9 ft).
// Source: WMO-No. 306, Volume I.1, FM 15 METAR, regulations 15.9.1.1 (NCD), 15.9.1.5 (steps of 30 m
// (100 ft), rounded down to the nearest lower step) and 15.9.1.7 ("///" for what an automatic
// system does not observe).
[[nodiscard]] QString metarCloudGroup(int metres);
inline constexpr QStringView kMetarNoCloud = u"NCD"; // no cloud detected by an automatic system
inline constexpr QStringView kMetarUnknown = u"//////";

} // namespace ork2
