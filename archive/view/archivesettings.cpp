// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivesettings.h"

#include "datafolder.h"
#include "watchdialog.h"

#include <QDir>

namespace ork2 {

QString terminalDataFolder()
{
    constexpr int kAnyUnit = 1;
    return QDir::cleanPath(dayFileFolder(kAnyUnit) + QStringLiteral("/.."));
}

WatchSettings storedWatchSettings()
{
    const QSettings store = archiveSettings();
    WatchSettings settings;
    settings.enabled = store.value(kWatchKey.toString(), false).toBool();
    const QList<int> thresholds = thresholdsOf(store.value(kThresholdsKey.toString()).toString());
    if (!thresholds.isEmpty()) {
        settings.thresholds = thresholds;
    }
    settings.hysteresis =
        qMax(0, store.value(kHysteresisKey.toString(), settings.hysteresis).toInt());
    return settings;
}

void storeWatchSettings(const WatchSettings &settings)
{
    QSettings store = archiveSettings();
    store.setValue(kWatchKey.toString(), settings.enabled);
    store.setValue(kThresholdsKey.toString(), thresholdsText(settings.thresholds));
    store.setValue(kHysteresisKey.toString(), settings.hysteresis);
}

} // namespace ork2
