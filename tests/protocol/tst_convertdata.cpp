// SPDX-License-Identifier: GPL-3.0-or-later
#include "convertdata.h"

#include "metamembers.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

class tst_convertdata : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void metaObject_members_areInDeclaredOrder();
    void cloud_frame_givesHeightsAndChannel_data();
    void cloud_frame_givesHeightsAndChannel();
    void cloud_frame_emitsHeightsBeforeChannel();
    void cloud_shortFrame_omitsMissingCharacters_data();
    void cloud_shortFrame_omitsMissingCharacters();
    void wind_frame_givesNineValues();
    void wind_decimalCodedByte_readsItsDigits();
    void wind_otherLength_emitsNothing();
    void temperature_frame_givesValue_data();
    void temperature_frame_givesValue();
    void temperature_otherLength_emitsNothing();
};

void tst_convertdata::metaObject_members_areInDeclaredOrder()
{
    const QByteArrayList expected{"crc16result(QByteArray)",
        "readyToShowWindSpeed(int,double,double,double)",
        "readyToShowWindDirection(int,double,double,double)",
        "readyToShowWindCritical(int,double,double,double)", "readyToShowTemp(int,double)",
        "readyToShowClouds(QString,QString)", "readyToShowCloudChanel(QString)",
        "parseWindData(QByteArray)", "parseTempData(QByteArray)", "parseCloudData(QByteArray)"};
    QCOMPARE(methodSignatures(convertData::staticMetaObject), expected);
}

void tst_convertdata::cloud_frame_givesHeightsAndChannel_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QString>("first");
    QTest::addColumn<QString>("second");
    QTest::addColumn<QString>("channel");
    const auto row = [](const char *name, const char *frame, const char *first, const char *second,
                         const char *channel) {
        QTest::newRow(name) << QByteArray(frame) << QString::fromLatin1(first)
                            << QString::fromLatin1(second) << QString::fromLatin1(channel);
    };
    row("second layer clear", "H012340000\r", "1234", "5000", "0");
    row("both layers 3000", "H130003000\r", "5000", "5000", "1");
    row("first layer clear", "H000000100\r", "5000", "0100", "0");
    row("5000 unchanged", "H050005000\r", "5000", "5000", "0");
    row("no flash", "H077777777\r", "7777", "7777", "0");
    row("not ready", "H088888888\r", "8888", "8888", "0");
    row("data error", "H099999999\r", "9999", "9999", "0");
    row("corrupted digit", "H01x341200\r", "1x34", "1200", "0");
    row("unknown channel", "H712341200\r", "1234", "1200", "7");
    row("last byte ignored", "H012341200X", "1234", "1200", "0");
    row("byte above 127 is one character",
        "H0\xe9"
        "2341200\r",
        "\xe9"
        "234",
        "1200", "0");
}

void tst_convertdata::cloud_frame_givesHeightsAndChannel()
{
    QFETCH(QByteArray, frame);
    QFETCH(QString, first);
    QFETCH(QString, second);
    QFETCH(QString, channel);
    convertData parser;
    QSignalSpy clouds(&parser, &convertData::readyToShowClouds);
    QSignalSpy channels(&parser, &convertData::readyToShowCloudChanel);
    QSignalSpy crc(&parser, &convertData::crc16result);
    parser.parseCloudData(frame);
    QCOMPARE(clouds, (QList<QVariantList>{{first, second}}));
    QCOMPARE(channels, (QList<QVariantList>{{channel}}));
    QCOMPARE(crc.count(), 0);
}

void tst_convertdata::cloud_frame_emitsHeightsBeforeChannel()
{
    convertData parser;
    QStringList order;
    connect(&parser, &convertData::readyToShowClouds, this,
        [&order] { order << QStringLiteral("heights"); });
    connect(&parser, &convertData::readyToShowCloudChanel, this,
        [&order] { order << QStringLiteral("channel"); });
    parser.parseCloudData(QByteArrayLiteral("H012340000\r"));
    QCOMPARE(order, QStringList({QStringLiteral("heights"), QStringLiteral("channel")}));
}

void tst_convertdata::cloud_shortFrame_omitsMissingCharacters_data()
{
    QTest::addColumn<QByteArray>("frame");
    QTest::addColumn<QVariantList>("heights");
    QTest::addColumn<QString>("channel");
    const QString none;
    QTest::newRow("nothing") << QByteArray() << QVariantList{none, none} << none;
    QTest::newRow("start only") << QByteArrayLiteral("H") << QVariantList{none, none} << none;
    QTest::newRow("within first height")
        << QByteArrayLiteral("H012") << QVariantList{QStringLiteral("12"), none}
        << QStringLiteral("0");
    QTest::newRow("within second height")
        << QByteArrayLiteral("H11234567")
        << QVariantList{QStringLiteral("1234"), QStringLiteral("567")} << QStringLiteral("1");
}

void tst_convertdata::cloud_shortFrame_omitsMissingCharacters()
{
    QFETCH(QByteArray, frame);
    QFETCH(QVariantList, heights);
    QFETCH(QString, channel);
    convertData parser;
    QSignalSpy clouds(&parser, &convertData::readyToShowClouds);
    QSignalSpy channels(&parser, &convertData::readyToShowCloudChanel);
    parser.parseCloudData(frame);
    QCOMPARE(clouds, (QList<QVariantList>{heights}));
    QCOMPARE(channels, (QList<QVariantList>{{channel}}));
}

void tst_convertdata::wind_frame_givesNineValues()
{
    // Address 2; speeds 1.5, 12.3, 0.0; directions 0x0167 = 359, 90, 256; critical 99.9, 20.1, 3.0.
    const QByteArray frame =
        QByteArray::fromHex("ff 02 ff 0105 0167 1203 005a 0000 0100 9909 2001 0300 ffffff");
    convertData parser;
    QStringList order;
    QList<QVariantList> values;
    const auto keep = [&](const char *name) {
        return [&order, &values, name](int address, double a, double b, double c) {
            order << QString::fromLatin1(name);
            values << QVariantList{address, a, b, c};
        };
    };
    connect(&parser, &convertData::readyToShowWindSpeed, this, keep("speed"));
    connect(&parser, &convertData::readyToShowWindDirection, this, keep("direction"));
    connect(&parser, &convertData::readyToShowWindCritical, this, keep("critical"));
    parser.parseWindData(frame);
    QCOMPARE(order.join(u' '), QStringLiteral("speed direction critical"));
    QCOMPARE(values,
        (QList<QVariantList>{{2, 1.5, 12.3, 0.0}, {2, 359.0, 90.0, 256.0}, {2, 99.9, 20.1, 3.0}}));
}

void tst_convertdata::wind_decimalCodedByte_readsItsDigits()
{
    for (int value = 0; value < 256; ++value) {
        const int high = value / 16;
        const int low = value % 16;
        const double expected = high <= 9 && low <= 9 ? high * 10 + low : 0;
        QByteArray frame(24, '\0');
        frame[3] = static_cast<char>(value);
        convertData parser;
        QSignalSpy speeds(&parser, &convertData::readyToShowWindSpeed);
        parser.parseWindData(frame);
        QCOMPARE(speeds.count(), 1);
        QCOMPARE(speeds.first().at(1).toDouble(), expected);
    }
}

void tst_convertdata::wind_otherLength_emitsNothing()
{
    convertData parser;
    QSignalSpy speeds(&parser, &convertData::readyToShowWindSpeed);
    QSignalSpy directions(&parser, &convertData::readyToShowWindDirection);
    QSignalSpy criticals(&parser, &convertData::readyToShowWindCritical);
    for (qsizetype length = 0; length <= 64; ++length) {
        parser.parseWindData(QByteArray(length, '\1'));
        const int expected = length >= 24 ? 1 : 0;
        QCOMPARE(speeds.count(), expected);
        QCOMPARE(directions.count(), expected);
        QCOMPARE(criticals.count(), expected);
    }
}

void tst_convertdata::temperature_frame_givesValue_data()
{
    QTest::addColumn<QByteArray>("words"); // bytes 3 to 6: low word, high word
    QTest::addColumn<double>("degrees");
    // 25 = 1.5625 * 2^4: exponent 131 = 0x83, mantissa 0x480000, so 0x41C80000.
    QTest::newRow("25") << QByteArray::fromHex("000041c8") << 25.0;
    // -10.5 = -1.3125 * 2^3: exponent 130, mantissa 0x280000, so 0xC1280000.
    QTest::newRow("-10.5") << QByteArray::fromHex("0000c128") << -10.5;
    // 0.1f = 0x3DCCCCCD: both words are used.
    QTest::newRow("0.1") << QByteArray::fromHex("cccd3dcc") << double{0.1F};
    QTest::newRow("-40.25") << QByteArray::fromHex("0000c221") << -40.25;
    QTest::newRow("1") << QByteArray::fromHex("00003f80") << 1.0;
    // No special case for a zero exponent: 0x800000 * 2^(0 - 127 - 23) = 2^-127.
    QTest::newRow("four zero bytes") << QByteArray::fromHex("00000000") << std::ldexp(1.0, -127);
    // Nor for the largest one: 2^23 * 2^(255 - 127 - 23) = 2^128.
    QTest::newRow("infinity of IEEE 754")
        << QByteArray::fromHex("00007f80") << std::ldexp(1.0, 128);
}

void tst_convertdata::temperature_frame_givesValue()
{
    QFETCH(QByteArray, words);
    QFETCH(double, degrees);
    convertData parser;
    QSignalSpy temperatures(&parser, &convertData::readyToShowTemp);
    parser.parseTempData(QByteArray::fromHex("0bffff") + words + QByteArray::fromHex("ffff"));
    QCOMPARE(temperatures.count(), 1);
    QCOMPARE(temperatures.first().at(0).toInt(), 11);
    // Exact comparison: QCOMPARE treats 2^-127 and 0 as equal.
    QVERIFY(temperatures.first().at(1).toDouble() == degrees);
}

void tst_convertdata::temperature_otherLength_emitsNothing()
{
    convertData parser;
    QSignalSpy temperatures(&parser, &convertData::readyToShowTemp);
    for (qsizetype length = 0; length <= 64; ++length) {
        parser.parseTempData(QByteArray(length, '\1'));
        QCOMPARE(temperatures.count(), length >= 9 ? 1 : 0);
    }
}

QTEST_APPLESS_MAIN(tst_convertdata)
#include "tst_convertdata.moc"
