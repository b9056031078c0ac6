// SPDX-License-Identifier: GPL-3.0-or-later
#include "datafolder.h"

#include "profile.h"

#include <QTest>

class tst_datafolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void storedFolder_setsBothFolders_data();
    void storedFolder_setsBothFolders();
};

void tst_datafolder::storedFolder_setsBothFolders_data()
{
    QTest::addColumn<QString>("stored"); // null: nothing
    QTest::addColumn<QString>("dayFiles");
    QTest::addColumn<QString>("opened");
    const QString programFolder = QCoreApplication::applicationDirPath();
    QTest::newRow("nothing") << QString() << programFolder + QStringLiteral("/Data/ORK-2 N17/")
                             << programFolder + QStringLiteral("/Data");
    QTest::newRow("mark") << QStringLiteral("!")
                          << programFolder + QStringLiteral("/Data/ORK-2 N17/")
                          << programFolder + QStringLiteral("/Data");
    QTest::newRow("a folder") << QStringLiteral("D:/Meteo/")
                              << QStringLiteral("D:/Meteo//Data/ORK-2 N17/")
                              << QStringLiteral("D:/Meteo/ORK2/Data/");
}

void tst_datafolder::storedFolder_setsBothFolders()
{
    QFETCH(const QString, stored);
    QFETCH(const QString, dayFiles);
    QFETCH(const QString, opened);
    profile::clear();
    if (!stored.isNull()) {
        profile::store(ork2::kNamePath, stored);
    }
    QCOMPARE(ork2::dayFileFolder(17), dayFiles);
    QCOMPARE(ork2::openedDataFolder(), opened);
}

QTEST_GUILESS_MAIN(tst_datafolder)
#include "tst_datafolder.moc"
