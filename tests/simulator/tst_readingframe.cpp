// SPDX-License-Identifier: GPL-3.0-or-later
#include "readingframe.h"

#include <QTest>

using namespace ork2;

class tst_readingframe : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void frame_anyReading_hasLayout_data();
    void frame_anyReading_hasLayout();
    void frame_fields_areSentUnchanged();
};

void tst_readingframe::frame_anyReading_hasLayout_data()
{
    QTest::addColumn<char>("channel");
    QTest::addColumn<int>("first");
    QTest::addColumn<int>("second");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("two layers") << '0' << 1234 << 4900 << QByteArray("H012344900\r");
    QTest::newRow("low base, clear above") << '0' << 60 << 0 << QByteArray("H000600000\r");
    QTest::newRow("reserve channel, error code")
        << '1' << 7777 << 9999 << QByteArray("H177779999\r");
}

void tst_readingframe::frame_anyReading_hasLayout()
{
    QFETCH(char, channel);
    QFETCH(int, first);
    QFETCH(int, second);
    QTEST(readingFrame({static_cast<Channel>(channel), first, second}), "bytes");
}

void tst_readingframe::frame_fields_areSentUnchanged()
{
    QCOMPARE(
        readingFrame(static_cast<Channel>('5'), "12:4", "\xFF---"), QByteArray("H512:4\xFF---\r"));
}

QTEST_GUILESS_MAIN(tst_readingframe)
#include "tst_readingframe.moc"
