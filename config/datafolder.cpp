// SPDX-License-Identifier: GPL-3.0-or-later
#include "datafolder.h"

#include "settingskeys.h"

#include <QCoreApplication>

namespace ork2 {

QString dayFileFolder(const RecordingPlace &place)
{
    return place.base + QStringLiteral("/Data/ORK-2 N%1/").arg(place.unitNumber);
}

QString dayFileFolder(int unitNumber)
{
    const QString namePath = storedText(kNamePath);
    const bool programFolder = namePath.startsWith(kProgramFolderMark);
    return dayFileFolder(
        {programFolder ? QCoreApplication::applicationDirPath() : namePath, unitNumber});
}

QString openedDataFolder()
{
    const QString namePath = storedText(kNamePath);
    return namePath.startsWith(kProgramFolderMark)
        ? QCoreApplication::applicationDirPath() + QStringLiteral("/Data")
        : namePath + QStringLiteral("ORK2/Data/");
}

} // namespace ork2
