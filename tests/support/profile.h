// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settingskeys.h"

#include <QDir>
#include <QFileInfo>
#include <QtTest/QtTest>

// The settings store of a test, which CTest places in the build tree.
namespace profile {

// A test that is started manually would otherwise modify the user's settings.
inline void requirePrivateStore()
{
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")) {
        qFatal("Start this test with ctest, which provides a separate settings store");
    }
}

inline void clear()
{
    requirePrivateStore();
    QSettings store = ork2::settingsStore();
    store.clear();
    store.sync();
}

inline void store(const ork2::SettingsKey &key, const QString &value)
{
    requirePrivateStore();
    QSettings store = ork2::settingsStore();
    ork2::storeText(store, key, value);
    store.sync();
}

inline QVariant stored(const ork2::SettingsKey &key)
{
    return ork2::settingsStore().value(key.name.toString());
}

} // namespace profile
