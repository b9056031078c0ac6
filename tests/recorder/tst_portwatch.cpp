// SPDX-License-Identifier: GPL-3.0-or-later
#include "portwatch.h"

#include "timeout.h"

#include <QDir>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

class tst_portwatch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void name_thatAppears_isReported_data();
    void name_thatAppears_isReported();
    void presentName_isNotReported();
};

void tst_portwatch::name_thatAppears_isReported_data()
{
    QTest::addColumn<bool>("folderExists");
    QTest::newRow("in an existing folder") << true;
    QTest::newRow("together with its folders") << false;
}

void tst_portwatch::name_thatAppears_isReported()
{
    QFETCH(bool, folderExists);
    const QTemporaryDir folder;
    const QString parent = folder.filePath(QStringLiteral("serial/by-id"));
    const QString name = parent + QStringLiteral("/adapter");
    if (folderExists) {
        QVERIFY(QDir().mkpath(parent));
    }
    ork2::PortWatch watch;
    watch.watch(name);
    QSignalSpy appeared(&watch, &ork2::PortWatch::appeared);
    QVERIFY(QDir().mkpath(parent));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), name));
    QTRY_COMPARE_WITH_TIMEOUT(appeared.count(), 1, kTimeoutMs);
}

// Other changes of the folder must not open the port again and again.
void tst_portwatch::presentName_isNotReported()
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("adapter"));
    const QString later = folder.filePath(QStringLiteral("later"));
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), name));
    ork2::PortWatch watch;
    ork2::PortWatch witness;
    QSignalSpy appeared(&watch, &ork2::PortWatch::appeared);
    QSignalSpy seen(&witness, &ork2::PortWatch::appeared);
    watch.watch(name);
    witness.watch(later);
    QVERIFY(QFile::link(QStringLiteral("/dev/null"), later));
    QTRY_COMPARE_WITH_TIMEOUT(seen.count(), 1, kTimeoutMs);
    QCOMPARE(appeared.count(), 0);
    // The name leads to another device: the adapter is back under another number.
    QVERIFY(QFile::remove(name));
    QVERIFY(QFile::link(QStringLiteral("/dev/zero"), name));
    QTRY_COMPARE_WITH_TIMEOUT(appeared.count(), 1, kTimeoutMs);
}

QTEST_GUILESS_MAIN(tst_portwatch)
#include "tst_portwatch.moc"
