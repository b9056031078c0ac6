// SPDX-License-Identifier: GPL-3.0-or-later
// Compares pictures of histories.
#include "archivechart.h"
#include "chartstyle.h"
#include "samples.h"

#include <QBuffer>

using namespace ork2;

namespace {

struct Picture
{
    QImage image;
    QRect plot; // the area of the heights, in pixels of the image
};

Picture picture(const History &history, qint64 length, double scale = 1,
    HeightScale heights = HeightScale::Usual)
{
    ArchiveChart chart(samples::moscow());
    chart.resize(800, 600);
    chart.setHistory(history);
    chart.setNow(samples::kStart);
    chart.setScale(heights);
    chart.setRange(samples::kStart, samples::kStart + length);
    Picture result;
    result.image = chart.toPixmap(800, 600, scale).toImage();
    const QRect plot = chart.axisRect(0)->rect();
    result.plot = QRect(plot.topLeft() * scale, plot.size() * scale);
    return result;
}

// The rows of pixels that have the colour.
QList<int> rowsOf(const Picture &shown, const QColor &color)
{
    QList<int> rows;
    for (int y = shown.plot.top(); y <= shown.plot.bottom(); ++y) {
        bool found = false;
        for (int x = shown.plot.left(); x <= shown.plot.right() && !found; ++x) {
            found = shown.image.pixelColor(x, y) == color;
        }
        if (found) {
            rows.append(y);
        }
    }
    return rows;
}

} // namespace

class tst_archivechart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void heights_areDrawnAtTheirPlace_data();
    void heights_areDrawnAtTheirPlace();
    void marksOfOnePixel_areDrawnOnce();
    void latestMark_isOnTop();
    void heightsAboveTheScale_areMarkedAtItsEdge();
    void codes_areNoHeights();
    void page_hasTheSizeOfThePaper();
    void fonts_areInPixels();
};

void tst_archivechart::heights_areDrawnAtTheirPlace_data()
{
    QTest::addColumn<qint64>("length");
    QTest::addColumn<double>("scale");

    for (const double scale : {1.0, 1.5, 2.0}) {
        QTest::addRow("marks, scale %g", scale) << kSecondsPerDay << scale;
        QTest::addRow("bars, scale %g", scale) << 365 * kSecondsPerDay << scale;
    }
}

void tst_archivechart::heights_areDrawnAtTheirPlace()
{
    QFETCH(qint64, length);
    QFETCH(double, scale);
    const Picture shown = picture(samples::history({samples::height(700, 1000)}), length, scale);
    const QList<int> rows = rowsOf(shown, ChartStyle().firstLayer);
    QVERIFY(!rows.isEmpty());
    const double middle = (rows.first() + rows.last() + 1) / 2.0;
    const double expected = shown.plot.top() + shown.plot.height() * (2000.0 / kUsualHeight);
    QVERIFY2(std::abs(middle - expected) <= 1.5 * scale, qPrintable(QString::number(middle)));
}

void tst_archivechart::marksOfOnePixel_areDrawnOnce()
{
    std::vector<Sample> many;
    for (int second = 0; second < 60; ++second) {
        Sample sample = samples::height(720, 500, 900);
        sample.time += second;
        many.push_back(sample);
    }
    const Picture once =
        picture(samples::history({samples::height(720, 500, 900)}), 3 * kSecondsPerDay);
    QCOMPARE(picture(samples::history(many), 3 * kSecondsPerDay).image, once.image);
    QVERIFY(!rowsOf(once, ChartStyle().firstLayer).isEmpty());
}

void tst_archivechart::latestMark_isOnTop()
{
    const auto shown = [](std::vector<int> heights) {
        std::vector<Sample> values;
        for (const int height : heights) {
            values.push_back(samples::height(720, height));
        }
        return picture(samples::history(values), 3 * kSecondsPerDay).image;
    };
    QCOMPARE(shown({500, 510, 500}), shown({510, 500}));
    QVERIFY(shown({500, 510}) != shown({510, 500}));
}

void tst_archivechart::heightsAboveTheScale_areMarkedAtItsEdge()
{
    for (const qint64 length : {kSecondsPerDay, 365 * kSecondsPerDay}) {
        const Picture shown = picture(samples::history({samples::height(700, 4000)}), length);
        const QList<int> rows = rowsOf(shown, ChartStyle().firstLayer);
        QVERIFY(!rows.isEmpty());
        QVERIFY(rows.last() < shown.plot.top() + 10);
        const Picture whole = picture(
            samples::history({samples::height(700, 4000)}), length, 1, HeightScale::Logarithmic);
        QVERIFY(rowsOf(whole, ChartStyle().firstLayer).first() > whole.plot.top() + 10);
    }
}

void tst_archivechart::codes_areNoHeights()
{
    const History codes = samples::history({samples::height(700, 7777, 7777),
        samples::height(701, 8888, 8888), samples::height(702, 9999, 9999)});
    for (const HeightScale scale :
        {HeightScale::Usual, HeightScale::Whole, HeightScale::Logarithmic}) {
        QVERIFY(
            rowsOf(picture(codes, kSecondsPerDay, 1, scale), ChartStyle().firstLayer).isEmpty());
    }
}

void tst_archivechart::page_hasTheSizeOfThePaper()
{
    ArchiveChart chart(samples::moscow());
    chart.setHistory(samples::history({samples::height(700, 1000)}));
    QBuffer pdf;
    QVERIFY(pdf.open(QIODevice::WriteOnly));
    QVERIFY(chart.writePdf(pdf));
    // A4 in points, landscape.
    QVERIFY(pdf.data().contains("/MediaBox [0 0 842"));
    QCOMPARE(pdf.data().count("/Type /Page\n"), 1);
}

// A font in points would be scaled twice: by the resolution of the page and by its painter.
void tst_archivechart::fonts_areInPixels()
{
    const ArchiveChart chart(samples::moscow());
    for (const QCPAxis *axis : chart.axisRect(0)->axes() + chart.axisRect(1)->axes()) {
        QVERIFY(axis->tickLabelFont().pixelSize() > 0);
        QVERIFY(axis->labelFont().pixelSize() > 0);
    }
}

QTEST_MAIN(tst_archivechart)
#include "tst_archivechart.moc"
