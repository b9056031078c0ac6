// SPDX-License-Identifier: GPL-3.0-or-later
#include "dotlayout.h"

#include <QTest>

#include <algorithm>
#include <cmath>

using ork2::Dot;
using ork2::PlotArea;

namespace {

constexpr int kDiameter = 5;
constexpr double kNow = 1.8e12; // ms since the epoch
constexpr double kWidthMs = 600000;

// Ten minutes and 3000 m in 600 x 300 pixels: a second and ten metres per pixel.
PlotArea tenMinutes()
{
    return {.latest = kNow,
        .timeScale = 1 / kWidthMs,
        .lowest = 0,
        .highest = 3000,
        .corner = QPointF(100, 50),
        .size = QSizeF(600, 300)};
}

QPointF middle(const Dot &dot)
{
    return QPointF(dot.corner) + QPointF(kDiameter, kDiameter) / 2;
}

int glowing(const QList<Dot> &dots)
{
    return static_cast<int>(
        std::count_if(dots.begin(), dots.end(), [](const Dot &dot) { return dot.glows; }));
}

} // namespace

class tst_dotlayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dot_anyPoint_isWithinHalfAPixel();
    void point_outsideTheArea_isLeftOut_data();
    void point_outsideTheArea_isLeftOut();
    void area_inAnyDirectionOfTime_keepsTheOrderOfPoints();
    void dots_farApart_allGlow();
    void dots_onALine_glowAsFarApartAsABlurredLineNeeds();
    void dots_aboveEachOther_glowSeparately();
};

void tst_dotlayout::dot_anyPoint_isWithinHalfAPixel()
{
    PlotArea area = tenMinutes();
    area.corner = QPointF(100.3, 50.8);
    area.size = QSizeF(571.4, 263.7);
    for (int i = 0; i <= 300; ++i) {
        const QPointF point(kNow - kWidthMs + i * 1987.0, i * 9.97);
        const QList<Dot> dots = ork2::dotsInArea({point}, area, kDiameter);
        QCOMPARE(dots.size(), 1);
        const QPointF exact = area.corner
            + QPointF((point.x() - kNow + kWidthMs) / kWidthMs * area.size.width(),
                (3000 - point.y()) / 3000 * area.size.height());
        const QPointF distance = middle(dots.constFirst()) - exact;
        QVERIFY2(std::abs(distance.x()) <= 0.5 && std::abs(distance.y()) <= 0.5,
            qPrintable(QStringLiteral("%1, %2").arg(distance.x()).arg(distance.y())));
    }
}

void tst_dotlayout::point_outsideTheArea_isLeftOut_data()
{
    QTest::addColumn<double>("time");
    QTest::addColumn<double>("height");
    QTest::addColumn<int>("count");
    QTest::newRow("inside") << kNow - 1000 << 1500.0 << 1;
    QTest::newRow("oldest time") << kNow - kWidthMs << 1500.0 << 1;
    QTest::newRow("too old") << kNow - kWidthMs - 1 << 1500.0 << 0;
    QTest::newRow("latest time") << kNow << 1500.0 << 1;
    QTest::newRow("after the latest time") << kNow + 1 << 1500.0 << 0;
    QTest::newRow("highest") << kNow - 1000 << 3000.0 << 1;
    QTest::newRow("too high") << kNow - 1000 << 3001.0 << 0;
    QTest::newRow("no cloud") << kNow - 1000 << 5000.0 << 0;
    QTest::newRow("lowest") << kNow - 1000 << 0.0 << 1;
    QTest::newRow("below the ground") << kNow - 1000 << -1.0 << 0;
    QTest::newRow("no number") << kNow - 1000 << std::nan("") << 0;
}

void tst_dotlayout::point_outsideTheArea_isLeftOut()
{
    QFETCH(const double, time);
    QFETCH(const double, height);
    QFETCH(const int, count);
    QCOMPARE(ork2::dotsInArea({{time, height}}, tenMinutes(), kDiameter).size(), count);
}

// After a clock has been set back, the times of the points are not in order.
void tst_dotlayout::area_inAnyDirectionOfTime_keepsTheOrderOfPoints()
{
    const QList<QPointF> points{{kNow - 5000, 100}, {kNow - 300000, 200}, {kNow - 100000, 300}};
    const QList<Dot> dots = ork2::dotsInArea(points, tenMinutes(), kDiameter);
    QCOMPARE(dots.size(), 3);
    QVERIFY(dots[0].corner.x() > dots[2].corner.x());
    QVERIFY(dots[2].corner.x() > dots[1].corner.x());
    QCOMPARE(glowing(dots), 3);
}

void tst_dotlayout::dots_farApart_allGlow()
{
    QList<QPointF> points;
    for (int i = 59; i >= 0; --i) {
        points.append({kNow - i * 10000, 1500});
    }
    QCOMPARE(glowing(ork2::dotsInArea(points, tenMinutes(), kDiameter)), 60);
}

void tst_dotlayout::dots_onALine_glowAsFarApartAsABlurredLineNeeds()
{
    QList<QPointF> points;
    for (int i = 599; i >= 0; --i) {
        points.append({kNow - 250 - i * 1000, 1500}); // a pixel each
    }
    const QList<Dot> dots = ork2::dotsInArea(points, tenMinutes(), kDiameter);
    QCOMPARE(dots.size(), 600);
    QCOMPARE(glowing(dots), 150); // one in four pixels
    for (int i = 0; i < dots.size(); ++i) {
        QCOMPARE(dots[i].glows, i % 4 == 0);
    }
}

void tst_dotlayout::dots_aboveEachOther_glowSeparately()
{
    QList<QPointF> points;
    for (int i = 9; i >= 0; --i) {
        points.append({kNow - i, 1000.0 + 200 * (i % 2)}); // 20 pixels
    }
    const QList<Dot> dots = ork2::dotsInArea(points, tenMinutes(), kDiameter);
    QCOMPARE(dots.size(), 10);
    QCOMPARE(glowing(dots), 2);
}

QTEST_APPLESS_MAIN(tst_dotlayout)

#include "tst_dotlayout.moc"
