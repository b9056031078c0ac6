// SPDX-License-Identifier: GPL-3.0-or-later
#include "savefile.h"

#include <QSaveFile>

namespace ork2 {

QString saveFile(const QString &fileName, const std::function<bool(QIODevice &)> &write)
{
    QSaveFile file(fileName);
    // commit() does not report an error of the data that is still in the buffer.
    const bool written =
        file.open(QIODevice::WriteOnly) && write(file) && file.flush() && file.commit();
    return written ? QString() : file.errorString();
}

} // namespace ork2
