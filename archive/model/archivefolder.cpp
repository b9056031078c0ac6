// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivefolder.h"

#include <QDir>
#include <QDirIterator>

#include <algorithm>

namespace ork2 {

namespace {

const QString kFolderPrefix = QStringLiteral("ORK-2 N");
const QString kFileDate = QStringLiteral("yyyy.MM.dd");
const QString kFileSuffix = QStringLiteral(".txt");

// Returns -1 if it is not the folder of an instrument.
int unitOfFolder(const QString &name)
{
    bool isNumber = false;
    const int unit =
        name.startsWith(kFolderPrefix) ? name.mid(kFolderPrefix.size()).toInt(&isNumber) : -1;
    return isNumber && unit >= 0 ? unit : -1;
}

// Returns an error message for the user, empty if the folder can be read.
QString accessError(const QString &folder)
{
    const QFileInfo info(folder);
    return info.isReadable() && info.isExecutable()
        ? QString()
        : QStringLiteral("Нет права на чтение папки «%1».").arg(folder);
}

Instrument instrumentIn(const QString &folder, int unit)
{
    Instrument instrument{unit, folder + u'/', {}, accessError(folder)};
    QDirIterator files(folder, QDir::Files | QDir::System);
    while (files.hasNext()) {
        files.next();
        if (const auto date = dateOfDayFile(files.fileName())) {
            instrument.days.append(*date);
        }
    }
    std::sort(instrument.days.begin(), instrument.days.end());
    return instrument;
}

QList<Instrument> instrumentsIn(const QString &path)
{
    QList<Instrument> instruments;
    QDirIterator folders(path, QDir::Dirs | QDir::NoDotAndDotDot);
    while (folders.hasNext()) {
        const QString folder = folders.next();
        const int unit = unitOfFolder(folders.fileName());
        if (unit >= 0) {
            instruments.append(instrumentIn(folder, unit));
        }
    }
    std::sort(instruments.begin(), instruments.end(),
        [](const Instrument &a, const Instrument &b) { return a.unit < b.unit; });
    return instruments;
}

} // namespace

std::optional<QDate> dateOfDayFile(const QString &fileName)
{
    if (!fileName.endsWith(kFileSuffix)) {
        return std::nullopt;
    }
    const QDate date = QDate::fromString(fileName.chopped(kFileSuffix.size()), kFileDate);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

QString Instrument::dayFile(QDate date) const
{
    return folder + date.toString(kFileDate) + kFileSuffix;
}

const Instrument *ArchiveFolder::instrument(int unit) const
{
    const auto found = std::find_if(instruments.begin(), instruments.end(),
        [unit](const Instrument &instrument) { return instrument.unit == unit; });
    return found != instruments.end() ? &*found : nullptr;
}

ArchiveFolder openArchiveFolder(const QString &path)
{
    ArchiveFolder archive;
    QDir dir(path.isEmpty() ? QStringLiteral(".") : path);
    archive.preferredUnit = unitOfFolder(dir.dirName());
    if (archive.preferredUnit >= 0) {
        dir.setPath(QDir::cleanPath(dir.absoluteFilePath(QStringLiteral(".."))));
    }
    archive.path = dir.absolutePath();
    if (!dir.exists()) {
        archive.error = QStringLiteral("Папки «%1» нет.").arg(archive.path);
        return archive;
    }
    archive.error = accessError(archive.path);
    if (!archive.error.isEmpty()) {
        return archive;
    }
    archive.instruments = instrumentsIn(archive.path);
    const QString inner = dir.filePath(QStringLiteral("Data"));
    if (archive.instruments.isEmpty() && QFileInfo(inner).isDir()) {
        archive.path = inner;
        archive.instruments = instrumentsIn(inner);
    }
    if (archive.instruments.isEmpty()) {
        archive.error =
            QStringLiteral("В папке «%1» нет папок приборов вида «ORK-2 N17».").arg(archive.path);
    }
    return archive;
}

} // namespace ork2
