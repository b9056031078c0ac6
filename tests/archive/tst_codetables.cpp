// SPDX-License-Identifier: GPL-3.0-or-later
#include "codetables.h"

#include <QTest>

using namespace ork2;

class tst_codetables : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void figure_ofHeight_followsTable1600_data();
    void figure_ofHeight_followsTable1600();
    void group_ofHeight_isRoundedDown_data();
    void group_ofHeight_isRoundedDown();
};

void tst_codetables::figure_ofHeight_followsTable1600_data()
{
    QTest::addColumn<int>("metres");
    QTest::addColumn<QChar>("figure");

    const QList<int> limits{50, 100, 200, 300, 600, 1000, 1500, 2000, 2500};
    QTest::newRow("1 m") << 1 << QChar(u'0');
    for (int i = 0; i < limits.size(); ++i) {
        QTest::addRow("%d m", limits[i] - 1) << limits[i] - 1 << QChar(u'0' + char16_t(i));
        QTest::addRow("%d m", limits[i]) << limits[i] << QChar(u'1' + char16_t(i));
    }
    QTest::newRow("9998 m") << 9998 << QChar(u'9');
}

void tst_codetables::figure_ofHeight_followsTable1600()
{
    QFETCH(int, metres);
    QTEST(cloudBaseFigure(metres), "figure");
}

void tst_codetables::group_ofHeight_isRoundedDown_data()
{
    QTest::addColumn<int>("metres");
    QTest::addColumn<QString>("group");

    QTest::newRow("98 ft") << 30 << QStringLiteral("///000");
    QTest::newRow("101 ft") << 31 << QStringLiteral("///001");
    QTest::newRow("196 ft") << 60 << QStringLiteral("///001");
    QTest::newRow("200.1 ft") << 61 << QStringLiteral("///002");
    QTest::newRow("299 ft") << 91 << QStringLiteral("///002");
    QTest::newRow("301 ft") << 92 << QStringLiteral("///003");
    QTest::newRow("exactly 2500 ft") << 762 << QStringLiteral("///025");
    QTest::newRow("2496 ft") << 761 << QStringLiteral("///024");
    QTest::newRow("9842 ft") << 3000 << QStringLiteral("///098");
}

void tst_codetables::group_ofHeight_isRoundedDown()
{
    QFETCH(int, metres);
    QTEST(metarCloudGroup(metres), "group");
}

QTEST_GUILESS_MAIN(tst_codetables)
#include "tst_codetables.moc"
