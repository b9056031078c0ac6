// SPDX-License-Identifier: GPL-3.0-or-later
#include "dotsprites.h"

#include <QTest>

using ork2::DotSprites;

namespace {

const QColor kBlue(0x20, 0x9f, 0xdf);

int alphaAt(const QImage &picture, QPoint place)
{
    return qAlpha(picture.pixel(place));
}

} // namespace

class tst_dotsprites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void dot_anyScale_isRound_data();
    void dot_anyScale_isRound();
    void glow_awayFromTheDot_fades();
    void glow_atItsEdge_isInvisible_data();
    void glow_atItsEdge_isInvisible();
    void color_ofEachPixel_isThatOfTheLayer();
};

void tst_dotsprites::dot_anyScale_isRound_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("diameter");
    QTest::newRow("100 %") << 1.0 << 5;
    QTest::newRow("125 %") << 1.25 << 6;
    QTest::newRow("150 %") << 1.5 << 8;
    QTest::newRow("200 %") << 2.0 << 10;
}

void tst_dotsprites::dot_anyScale_isRound()
{
    QFETCH(const double, ratio);
    QFETCH(const int, diameter);
    const DotSprites sprites(kBlue, ratio);
    QCOMPARE(sprites.diameter, diameter);
    const QImage dot = sprites.image.copy(sprites.plain);
    QCOMPARE(dot.size(), QSize(diameter, diameter));
    QCOMPARE(dot, dot.mirrored(true, false));
    QCOMPARE(dot, dot.mirrored(false, true));
    QCOMPARE(dot, dot.transformed(QTransform().rotate(90)));
    QCOMPARE(alphaAt(dot, dot.rect().center()), 255);
    QVERIFY(alphaAt(dot, {diameter / 2, 0}) > 200); // reaches its edge,
    QVERIFY(alphaAt(dot, {0, 0}) < 100);            // but not its corner
    // The area of a disc.
    int sum = 0;
    for (int y = 0; y < diameter; ++y) {
        for (int x = 0; x < diameter; ++x) {
            sum += alphaAt(dot, {x, y});
        }
    }
    const double area = M_PI * diameter * diameter / 4;
    QVERIFY(qAbs(sum / 255.0 - area) < 0.03 * area);
}

void tst_dotsprites::glow_awayFromTheDot_fades()
{
    const DotSprites sprites(kBlue, 1);
    const QPoint middle = sprites.glowing.center();
    int before = 255;
    for (int distance = 3; distance <= sprites.glowing.width() / 2; ++distance) {
        const int alpha = alphaAt(sprites.image, middle + QPoint(distance, 0));
        QVERIFY2(alpha < before, QByteArray::number(distance));
        QCOMPARE(alphaAt(sprites.image, middle - QPoint(0, distance)), alpha);
        before = alpha;
    }
    QVERIFY(alphaAt(sprites.image, middle + QPoint(4, 0)) > 50);
}

void tst_dotsprites::glow_atItsEdge_isInvisible_data()
{
    QTest::addColumn<double>("ratio");
    QTest::newRow("100 %") << 1.0;
    QTest::newRow("125 %") << 1.25;
    QTest::newRow("200 %") << 2.0;
}

void tst_dotsprites::glow_atItsEdge_isInvisible()
{
    QFETCH(const double, ratio);
    const DotSprites sprites(kBlue, ratio);
    const QRect edge = sprites.glowing;
    for (int i = 0; i < edge.width(); ++i) {
        QVERIFY(alphaAt(sprites.image, {i, edge.top()}) <= 3);
        QVERIFY(alphaAt(sprites.image, {edge.left(), i}) <= 3);
    }
}

void tst_dotsprites::color_ofEachPixel_isThatOfTheLayer()
{
    const DotSprites sprites(kBlue, 1);
    const QImage picture = sprites.image.convertToFormat(QImage::Format_ARGB32);
    const QRgb seen = picture.pixel(sprites.plain.center());
    QCOMPARE(QColor(seen), kBlue);
    const QColor glow = sprites.image.pixelColor(sprites.glowing.center() + QPoint(5, 0));
    QVERIFY(glow.alpha() > 20);
    QVERIFY(qAbs(glow.red() - kBlue.red()) < 12 && qAbs(glow.blue() - kBlue.blue()) < 12);
}

QTEST_APPLESS_MAIN(tst_dotsprites)

#include "tst_dotsprites.moc"
