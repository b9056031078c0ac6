// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSettings>
#include <QString>
#include <QStringView>

// Every key of the per-user settings store and its default. Values are stored as strings, also
// where the reader converts them to a number.
namespace ork2 {

inline constexpr QStringView kOrganisation = u"КАСТОР";
inline constexpr QStringView kApplication = u"Терминал ОРК-2";

// One persisted value: its key and what a reader gets while it is absent.
struct SettingsKey
{
    QStringView name;
    QStringView fallback;
};

// Folder in front of "Data/", or text beginning with "!" for the program's own folder.
inline constexpr SettingsKey kNamePath{u"SETTINGS/_NAME_PATH", u"!"};
inline constexpr QChar kOwnFolderMark = u'!';
inline constexpr SettingsKey kUnitNumber{u"SETTINGS/_NUM", u"1"};
inline constexpr SettingsKey kUnitYear{u"SETTINGS/_YEAR", u"2014"};
// The port has two defaults, and that is meant: who must open one falls back to COM3, who only
// shows the stored one shows dashes.
inline constexpr SettingsKey kPortToOpen{u"SETTINGS/_COM", u"COM3"};
inline constexpr SettingsKey kPortToShow{u"SETTINGS/_COM", u"----"};
// The database keys are never written by the program; whoever runs the server puts them there.
inline constexpr SettingsKey kServerHost{u"SETTINGS/_SERV_HOST", u"" ORK2_DEFAULT_DB_HOST};
inline constexpr SettingsKey kServerPort{u"SETTINGS/_SERV_PORT", u"1433"};
inline constexpr SettingsKey kServerUser{u"SETTINGS/_SERV_USER", u"uvi"};
inline constexpr SettingsKey kServerPassword{u"SETTINGS/_SERV_PASS", u""};
inline constexpr SettingsKey kServerStation{u"SETTINGS/_SERV_STATION", u"-"};

// In characters. A name, a number or a path is no longer; what is was damaged, and laying it out
// would take gigabytes.
inline constexpr qsizetype kLongestValue = 4096;

// The settings store, for one short use in the calling thread; never share one between threads.
[[nodiscard]] inline QSettings settingsStore()
{
    return QSettings(kOrganisation.toString(), kApplication.toString());
}

[[nodiscard]] inline QString storedText(const QSettings &store, const SettingsKey &key)
{
    const QString fallback = key.fallback.toString();
    const QString value = store.value(key.name.toString(), fallback).toString();
    return value.size() <= kLongestValue ? value : fallback;
}

[[nodiscard]] inline QString storedText(const SettingsKey &key)
{
    return storedText(settingsStore(), key);
}

inline void storeText(QSettings &store, const SettingsKey &key, const QString &value)
{
    store.setValue(key.name.toString(), value);
}

} // namespace ork2
