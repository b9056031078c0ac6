// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ceilingwatch.h"

#include <QSettings>

namespace ork2 {

// The program's own per-user settings; those of the terminal are only read.
[[nodiscard]] inline QSettings archiveSettings()
{
    return QSettings(QStringLiteral("КАСТОР"), QStringLiteral("Архив ОРК-2"));
}

inline constexpr QStringView kFolderKey = u"folder"; // empty: that of the terminal
inline constexpr QStringView kUnitKey = u"unit";
inline constexpr QStringView kGeometryKey = u"geometry";
inline constexpr QStringView kFromKey = u"from"; // seconds since the epoch
inline constexpr QStringView kToKey = u"to";
inline constexpr QStringView kFollowKey = u"follow";
inline constexpr QStringView kScaleKey = u"scale";
inline constexpr QStringView kWatchKey = u"watch";
inline constexpr QStringView kThresholdsKey = u"thresholds";
inline constexpr QStringView kHysteresisKey = u"hysteresis";

// The folder that contains the instruments' folders of the terminal of this user.
[[nodiscard]] QString terminalDataFolder();

[[nodiscard]] WatchSettings storedWatchSettings();
void storeWatchSettings(const WatchSettings &settings);

} // namespace ork2
