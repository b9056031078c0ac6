// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfilerecords.h"

#include "dayfileformat.h"

#include <QFile>
#include <QFileInfo>

namespace ork2 {

int recordsInDayFile(const QString &path)
{
    constexpr int kHeadingLineBreaks = 2;
    constexpr qint64 kMaxDayFileSize = 1'048'576; // a day has some 50 KB
    QFile file(path);
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    const auto lineBreaks = static_cast<int>(file.read(kMaxDayFileSize).count(kLineBreak.toUtf8()));
    return qMax(lineBreaks - kHeadingLineBreaks, 0);
}

} // namespace ork2
