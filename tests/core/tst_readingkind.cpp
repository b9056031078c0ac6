// SPDX-License-Identifier: GPL-3.0-or-later
#include "readingkind.h"

#include <QTest>

Q_DECLARE_METATYPE(ork2::ReadingKind)

class tst_readingkind : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void plottedHeight_ofText_data();
    void plottedHeight_ofText();
    void readingKind_ofBothLayers_data();
    void readingKind_ofBothLayers();
};

void tst_readingkind::plottedHeight_ofText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("metres");
    const auto row = [](const char *text, double metres) {
        QTest::addRow("\"%s\"", text) << QString::fromLatin1(text) << metres;
    };
    row("0120", 120);
    row("4999", 4999);
    row("0000", 5000);
    row("", 5000);
    row("1x34", 5000);
    row("----", 5000);
    row("nan ", 5000);
    row("-nan", 5000);
    row("inf ", 5000);
    row("-inf", 5000);
    row("7777", 7777);
}

void tst_readingkind::plottedHeight_ofText()
{
    QFETCH(const QString, text);
    QFETCH(const double, metres);
    QCOMPARE(ork2::plottedHeight(text), metres);
}

void tst_readingkind::readingKind_ofBothLayers_data()
{
    using Kind = ork2::ReadingKind;
    QTest::addColumn<double>("first");
    QTest::addColumn<double>("second");
    QTest::addColumn<Kind>("kind");
    const auto row = [](double first, double second, Kind kind) {
        QTest::addRow("%g and %g", first, second) << first << second << kind;
    };
    row(120, 240, Kind::Measured);
    row(5000, 5000, Kind::Measured);
    row(5000.5, 1, Kind::Measured);
    row(5001, 100, Kind::Other);
    row(100, 5001, Kind::Other);
    row(7777, 7777, Kind::NoFlash);
    row(8888, 8888, Kind::NotReady);
    row(9999, 9999, Kind::DataError);
    row(7777, 1200, Kind::Other);
    row(1200, 7777, Kind::Other);
    row(7777, 9999, Kind::Other);
    row(9999, 8888, Kind::Other);
    row(8888, 7777, Kind::Other);
}

void tst_readingkind::readingKind_ofBothLayers()
{
    QFETCH(const double, first);
    QFETCH(const double, second);
    QFETCH(const ork2::ReadingKind, kind);
    QVERIFY(ork2::readingKind(first, second) == kind);
}

QTEST_GUILESS_MAIN(tst_readingkind)
#include "tst_readingkind.moc"
