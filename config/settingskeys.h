// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QSettings>
#include <QString>
#include <QStringView>

// All keys of the per-user settings store and their defaults. All values are stored as strings,
// including those that are converted to a number when read.
namespace ork2 {

inline constexpr QStringView kOrganisation = u"КАСТОР";
inline constexpr QStringView kApplication = u"Терминал ОРК-2";

// A key of the settings store, and the value returned if the key does not exist.
struct SettingsKey
{
    QStringView name;
    QStringView fallback;
};

// Folder that contains "Data/", or a text that begins with "!" for the program folder.
inline constexpr SettingsKey kNamePath{u"SETTINGS/_NAME_PATH", u"!"};
inline constexpr QChar kProgramFolderMark = u'!';
inline constexpr SettingsKey kUnitNumber{u"SETTINGS/_NUM", u"1"};
inline constexpr SettingsKey kUnitYear{u"SETTINGS/_YEAR", u"2014"};
// Intentional: the port has two defaults. Opening falls back to COM3; the display shows dashes.
inline constexpr SettingsKey kPortToOpen{u"SETTINGS/_COM", u"COM3"};
inline constexpr SettingsKey kPortToShow{u"SETTINGS/_COM", u"----"};
// The program never writes the database keys; the server's administrator sets them.
inline constexpr SettingsKey kServerHost{u"SETTINGS/_SERV_HOST", u"" ORK2_DEFAULT_DB_HOST};
inline constexpr SettingsKey kServerPort{u"SETTINGS/_SERV_PORT", u"1433"};
inline constexpr SettingsKey kServerUser{u"SETTINGS/_SERV_USER", u"uvi"};
inline constexpr SettingsKey kServerPassword{u"SETTINGS/_SERV_PASS", u""};
inline constexpr SettingsKey kServerStation{u"SETTINGS/_SERV_STATION", u"-"};

// In characters. A longer value is corrupt, and its text layout would need gigabytes of memory.
inline constexpr qsizetype kMaxValueLength = 4096;

// Returns the settings store for short use in the calling thread. Do not share it between threads.
[[nodiscard]] inline QSettings settingsStore()
{
    return QSettings(kOrganisation.toString(), kApplication.toString());
}

[[nodiscard]] inline QString storedText(const QSettings &store, const SettingsKey &key)
{
    const QString fallback = key.fallback.toString();
    const QString value = store.value(key.name.toString(), fallback).toString();
    return value.size() <= kMaxValueLength ? value : fallback;
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
