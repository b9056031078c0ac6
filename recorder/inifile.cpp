// SPDX-License-Identifier: GPL-3.0-or-later
#include "inifile.h"

#include <QStringList>

namespace ork2 {

IniContents readIni(const QString &text)
{
    IniContents contents;
    QString section;
    int number = 0;
    const QStringList lines = text.split(u'\n');
    for (const QString &raw : lines) {
        ++number;
        const QString line = raw.trimmed();
        const qsizetype equals = line.indexOf(u'=');
        if (line.isEmpty() || line.startsWith(u'#') || line.startsWith(u';')) {
            continue;
        }
        if (line.startsWith(u'[') && line.endsWith(u']')) {
            section = line.mid(1, line.size() - 2).trimmed();
        } else if (equals > 0) {
            contents.entries << IniEntry{
                number, section, line.first(equals).trimmed(), line.mid(equals + 1).trimmed()};
        } else {
            contents.wrongLine = number;
            return contents;
        }
    }
    return contents;
}

} // namespace ork2
