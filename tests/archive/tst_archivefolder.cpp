// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivefolder.h"
#include "samples.h"

#include <QTemporaryDir>

using namespace ork2;

class tst_archivefolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void instrumentsAndDays_areSorted();
    void otherFiles_areIgnored();
    void outerAndInnerFolders_areAccepted();
    void missingOrEmptyFolder_isReported();
    void foldersWithoutRights_areReported();

private:
    [[nodiscard]] QString data(const QString &name = {}) const
    {
        return m_folder->filePath(QStringLiteral("base/Data") + name);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_archivefolder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char *name : {"/ORK-2 N17/2026.11.22.txt", "/ORK-2 N17/2026.11.05.txt",
             "/ORK-2 N3/2025.01.01.txt", "/ORK-2 N17/2026.13.01.txt", "/ORK-2 N17/notes.txt",
             "/ORK-2 N17/2026.11.07.bak", "/ORK-2 Nx/2026.11.22.txt", "/Header.txt"}) {
        samples::write(data(QString::fromLatin1(name)), "");
    }
}

void tst_archivefolder::instrumentsAndDays_areSorted()
{
    const ArchiveFolder archive = openArchiveFolder(data());
    QCOMPARE(archive.error, QString());
    QCOMPARE(archive.instruments.size(), 2);
    QCOMPARE(archive.instruments[0].unit, 3);
    QCOMPARE(archive.instruments[1].unit, 17);
    QCOMPARE(archive.instruments[1].days, QList<QDate>({QDate(2026, 11, 5), QDate(2026, 11, 22)}));
    QCOMPARE(archive.instrument(17)->dayFile(QDate(2026, 11, 5)),
        data(QStringLiteral("/ORK-2 N17/2026.11.05.txt")));
    QCOMPARE(archive.instrument(18), nullptr);
}

void tst_archivefolder::otherFiles_areIgnored()
{
    QVERIFY(!dateOfDayFile(QStringLiteral("2026.11.22.txt~")));
    QVERIFY(!dateOfDayFile(QStringLiteral("2026.2.3.txt")));
    QVERIFY(dateOfDayFile(QStringLiteral("2026.11.22.txt")));
}

void tst_archivefolder::outerAndInnerFolders_areAccepted()
{
    QCOMPARE(openArchiveFolder(m_folder->filePath(QStringLiteral("base"))).path, data());
    const ArchiveFolder inner = openArchiveFolder(data(QStringLiteral("/ORK-2 N17/")));
    QCOMPARE(inner.path, data());
    QCOMPARE(inner.preferredUnit, 17);
}

void tst_archivefolder::missingOrEmptyFolder_isReported()
{
    QVERIFY(openArchiveFolder(data(QStringLiteral("/none"))).error.contains(u"нет"));
    QVERIFY(!openArchiveFolder(m_folder->path()).error.isEmpty());
    QVERIFY(!openArchiveFolder(data(QStringLiteral("/Header.txt"))).error.isEmpty());
}

void tst_archivefolder::foldersWithoutRights_areReported()
{
    const QFile::Permissions all = QFile::Permissions::fromInt(0x7755);
    QVERIFY(QFile::setPermissions(m_folder->path(), all));
    const QString closed = data(QStringLiteral("/ORK-2 N17"));
    QVERIFY(QFile::setPermissions(closed, {}));
    {
        const samples::OtherUser user;
        const ArchiveFolder archive = openArchiveFolder(data());
        QCOMPARE(archive.error, QString());
        QCOMPARE(archive.instrument(3)->days.size(), 1);
        QCOMPARE(archive.instrument(17)->error,
            QStringLiteral("Нет права на чтение папки «%1».").arg(closed));
    }
    QVERIFY(QFile::setPermissions(closed, all));
    QVERIFY(QFile::setPermissions(data(), {}));
    {
        const samples::OtherUser user;
        QCOMPARE(openArchiveFolder(data()).error,
            QStringLiteral("Нет права на чтение папки «%1».").arg(data()));
    }
    QVERIFY(QFile::setPermissions(data(), all)); // so that it can be removed
}

QTEST_GUILESS_MAIN(tst_archivefolder)
#include "tst_archivefolder.moc"
