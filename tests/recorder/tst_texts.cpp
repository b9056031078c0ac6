// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayfilerecords.h"
#include "durationtext.h"
#include "portname.h"
#include "retrydelay.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

class tst_texts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void duration_hasTwoUnits_data();
    void duration_hasTwoUnits();
    void retryDelay_growsToTenSeconds();
    void portPath_bareName_isInDev();
    void portDevice_followsLinks();
    void foldersOnTheWay_includeThoseOfLinks();
    void records_areCounted();
};

void tst_texts::duration_hasTwoUnits_data()
{
    QTest::addColumn<qint64>("seconds");
    QTest::addColumn<QString>("text");
    QTest::newRow("clock set back") << qint64(-5) << QStringLiteral("0 с");
    QTest::newRow("seconds") << qint64(59) << QStringLiteral("59 с");
    QTest::newRow("minute") << qint64(60) << QStringLiteral("1 мин 0 с");
    QTest::newRow("minutes") << qint64(3599) << QStringLiteral("59 мин 59 с");
    QTest::newRow("hours") << qint64(3600 * 5 + 61) << QStringLiteral("5 ч 1 мин");
    QTest::newRow("days") << qint64(86400 * 2 + 3600 * 4) << QStringLiteral("2 сут 4 ч");
}

void tst_texts::duration_hasTwoUnits()
{
    QFETCH(qint64, seconds);
    QTEST(ork2::durationText(seconds), "text");
}

void tst_texts::retryDelay_growsToTenSeconds()
{
    QList<int> delays;
    for (int failures = 0; failures < 6; ++failures) {
        delays << ork2::retryDelaySeconds(failures);
    }
    QCOMPARE(delays, (QList<int>{1, 2, 5, 10, 10, 10}));
}

void tst_texts::portPath_bareName_isInDev()
{
    QCOMPARE(ork2::portPath(QStringLiteral("ttyUSB0")), QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(ork2::portPath(QStringLiteral("/dev/serial/by-id/x")),
        QStringLiteral("/dev/serial/by-id/x"));
}

void tst_texts::portDevice_followsLinks()
{
    const QTemporaryDir folder;
    const QString link = folder.filePath(QStringLiteral("a"));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), folder.filePath(QStringLiteral("b"))));
    QVERIFY(QFile::link(folder.filePath(QStringLiteral("b")), link));
    QCOMPARE(ork2::portDevice(link), QStringLiteral("/dev/null"));
    QVERIFY(QFile::remove(folder.filePath(QStringLiteral("b"))));
    QCOMPARE(ork2::portDevice(link), link);
}

void tst_texts::foldersOnTheWay_includeThoseOfLinks()
{
    const QTemporaryDir folder;
    const QString base = folder.path();
    QVERIFY(QDir(base).mkdir(QStringLiteral("devices")));
    QVERIFY(QFile::link(base + QStringLiteral("/devices/tty"), base + QStringLiteral("/port")));
    QCOMPARE(ork2::foldersOnTheWay(base + QStringLiteral("/port")),
        (QStringList{base, base + QStringLiteral("/devices")}));
    // A folder that does not exist yet: its parent tells when it is created.
    QCOMPARE(ork2::foldersOnTheWay(base + QStringLiteral("/serial/by-id/x")), QStringList{base});
    QVERIFY(QFile::link(base + QStringLiteral("/c1"), base + QStringLiteral("/c2")));
    QVERIFY(QFile::link(base + QStringLiteral("/c2"), base + QStringLiteral("/c1")));
    QCOMPARE(ork2::foldersOnTheWay(base + QStringLiteral("/c1")), QStringList{base});
}

void tst_texts::records_areCounted()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("day.txt")));
    QCOMPARE(ork2::recordsInDayFile(file.fileName()), 0);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("heading\r\nheading\r\n");
    QVERIFY(file.flush());
    QCOMPARE(ork2::recordsInDayFile(file.fileName()), 0);
    file.write("\r\n00:01:00\t0420\t----\tx\r\n00:02:00\t0420\t----\tx");
    file.close();
    QCOMPARE(ork2::recordsInDayFile(file.fileName()), 2);
}

QTEST_GUILESS_MAIN(tst_texts)
#include "tst_texts.moc"
