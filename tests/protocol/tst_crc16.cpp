// SPDX-License-Identifier: GPL-3.0-or-later
#include "crc16.h"

#include <QTest>

class tst_crc16 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void crc_knownMessages_data();
    void crc_knownMessages();
};

void tst_crc16::crc_knownMessages_data()
{
    QTest::addColumn<QByteArray>("message");
    QTest::addColumn<quint16>("crc");
    QTest::newRow("no bytes") << QByteArray() << quint16{0xFFFF};
    // The check value of CRC-16/MODBUS in CRC catalogues.
    QTest::newRow("123456789") << QByteArrayLiteral("123456789") << quint16{0x4B37};
    QTest::newRow("request") << QByteArray::fromHex("3A00410000") << quint16{0x11AC};
    QTest::newRow("request with heater") << QByteArray::fromHex("3A00410100") << quint16{0x81AD};
}

void tst_crc16::crc_knownMessages()
{
    QFETCH(QByteArray, message);
    QFETCH(quint16, crc);
    QCOMPARE(ork2::crc16Modbus(message), crc);
}

QTEST_APPLESS_MAIN(tst_crc16)
#include "tst_crc16.moc"
