// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

namespace ork2 {

struct IniEntry
{
    int line = 0; // counted from 1
    QString section;
    QString key;
    QString value; // without surrounding white space; may be empty
};

struct IniContents
{
    QList<IniEntry> entries; // in the order of the file
    int wrongLine = 0;       // the first line that is none of these kinds; 0: all are
};

// Reads "[section]", "key=value" and comments, lines that begin with '#' or ';'. Unlike QSettings,
// takes values literally: a password may contain commas, quotes and backslashes.
[[nodiscard]] IniContents readIni(const QString &text);

} // namespace ork2
