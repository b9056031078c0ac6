// SPDX-License-Identifier: GPL-3.0-or-later
#include "framesync.h"

#include <QTest>

class tst_framesync : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fullBuffer_keepsTheStartOfTheNextFrame_data();
    void fullBuffer_keepsTheStartOfTheNextFrame();
};

void tst_framesync::fullBuffer_keepsTheStartOfTheNextFrame_data()
{
    QTest::addColumn<QByteArray>("buffer");
    QTest::addColumn<QByteArray>("kept");
    QTest::newRow("frame") << QByteArray("H012345678\r") << QByteArray();
    QTest::newRow("byte lost, next frame begins") << QByteArray("H01234567\rH") << QByteArray("H");
    QTest::newRow("opened in the middle of a frame")
        << QByteArray("5678\rH01234") << QByteArray("H01234");
    QTest::newRow("opened after the H") << QByteArray("012345678\rH") << QByteArray("H");
    QTest::newRow("rest of a longer frame")
        << QByteArray("\rH012345678") << QByteArray("H012345678");
    QTest::newRow("byte added") << QByteArray("H0123455678") << QByteArray();
    QTest::newRow("last of several H") << QByteArray("HH0HH123456") << QByteArray("H123456");
    QTest::newRow("H lost") << QByteArray("X012345678\r") << QByteArray();
    QTest::newRow("digit corrupted to H") << QByteArray("H0123H5678\r") << QByteArray();
    QTest::newRow("H instead of the carriage return")
        << QByteArray("01234567890").replace(10, 1, "H") << QByteArray("H");
    QTest::newRow("garbage is kept") << QByteArray("01234567890") << QByteArray("01234567890");
    QTest::newRow("carriage return inside garbage")
        << QByteArray("01234\r67890") << QByteArray("01234\r67890");
    QTest::newRow("zero bytes") << QByteArray(11, '\0') << QByteArray(11, '\0');
}

void tst_framesync::fullBuffer_keepsTheStartOfTheNextFrame()
{
    QFETCH(const QByteArray, buffer);
    QFETCH(const QByteArray, kept);
    QCOMPARE(buffer.size(), 11);
    QCOMPARE(buffer.sliced(ork2::bytesBeforeNextFrame(buffer)), kept);
}

QTEST_GUILESS_MAIN(tst_framesync)
#include "tst_framesync.moc"
