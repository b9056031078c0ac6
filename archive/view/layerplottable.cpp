// SPDX-License-Identifier: GPL-3.0-or-later
#include "layerplottable.h"

#include "chartstyle.h"

#include <array>
#include <limits>

namespace ork2 {

namespace {

constexpr int kHeights = 10000; // 0 to 9999 m
constexpr double kMarkRadius = 2.5;
constexpr double kAboveMarkWidth = 8;
constexpr double kAboveMarkHeight = 6;
constexpr double kSecondsPerMark = 400; // fewer seconds per pixel: marks are drawn separately
constexpr int kOutlineDarkness = 125;
constexpr double kLightFill = 0.5;

} // namespace

// The vertical position of each height, so that a year needs no logarithms.
struct LayerPlottable::Rows
{
    explicit Rows(const QCPAxis &axis)
        : top(axis.coordToPixel(axis.range().upper))
        , bottom(axis.coordToPixel(axis.range().lower))
    {
        pixels.reserve(kHeights);
        for (int height = 0; height < kHeights; ++height) {
            const double metres = std::max(double(height), axis.range().lower);
            pixels.push_back(axis.coordToPixel(metres));
        }
    }

    [[nodiscard]] double of(int height) const { return pixels[static_cast<std::size_t>(height)]; }
    [[nodiscard]] bool isAbove(int height) const { return of(height) < top - 0.5; }

    double top;
    double bottom;
    std::vector<double> pixels;
};

LayerPlottable::LayerPlottable(
    QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history, Layer layer)
    : QCPAbstractPlottable(keyAxis, valueAxis)
    , m_history(history)
    , m_layer(layer)
{ }

void LayerPlottable::setColors(const QColor &fill, const QColor &background)
{
    m_fill = fill;
    m_background = background;
    m_outline = background.lightness() < 128 ? fill.lighter(kOutlineDarkness)
                                             : fill.darker(kOutlineDarkness);
}

double LayerPlottable::selectTest(const QPointF &, bool, QVariant *) const
{
    return -1;
}

QCPRange LayerPlottable::getKeyRange(bool &found, QCP::SignDomain) const
{
    found = false;
    return {};
}

QCPRange LayerPlottable::getValueRange(bool &found, QCP::SignDomain, const QCPRange &) const
{
    found = false;
    return {};
}

template <typename Function> void LayerPlottable::forEachHeight(Function function) const
{
    const QCPRange range = mKeyAxis->range();
    const double start = mKeyAxis->coordToPixel(range.lower);
    const double scale = (mKeyAxis->coordToPixel(range.upper) - start) / range.size();
    m_history.forEach(static_cast<qint64>(range.lower), static_cast<qint64>(range.upper) + 1,
        [&](const Sample &sample) {
            const LayerValue value = m_layer == Layer::First ? sample.first : sample.second;
            if (value.isHeight()) {
                function(start + (static_cast<double>(sample.time) - range.lower) * scale,
                    value.number());
            }
        });
}

void LayerPlottable::draw(QCPPainter *painter)
{
    const Rows rows(*mValueAxis);
    const double secondsPerPixel = mKeyAxis->range().size() / mKeyAxis->axisRect()->width();
    preparePainter(*painter);
    if (m_everyMark || secondsPerPixel < kSecondsPerMark) {
        drawMarks(*painter, rows);
    } else {
        drawColumns(*painter, rows);
    }
}

void LayerPlottable::preparePainter(QCPPainter &painter) const
{
    painter.setAntialiasing(true);
    painter.setPen(QPen(m_outline, 1));
    painter.setBrush(
        m_layer == Layer::First ? m_fill : ChartStyle::blend(m_fill, m_background, kLightFill));
}

void LayerPlottable::drawMarks(QCPPainter &painter, const Rows &rows) const
{
    forEachHeight([&](double x, int height) {
        if (rows.isAbove(height)) {
            drawAboveMark(painter, x);
        } else {
            drawMark(painter, {x, rows.of(height)});
        }
    });
}

// The first layer has filled circles, the second one squares with a light fill, so that they
// differ without colours.
void LayerPlottable::drawMark(QCPPainter &painter, QPointF place) const
{
    if (m_layer == Layer::First) {
        painter.drawEllipse(place, kMarkRadius, kMarkRadius);
    } else {
        painter.drawRect(QRectF(
            place.x() - kMarkRadius, place.y() - kMarkRadius, 2 * kMarkRadius, 2 * kMarkRadius));
    }
}

void LayerPlottable::drawAboveMark(QCPPainter &painter, double x) const
{
    const double top = mValueAxis->coordToPixel(mValueAxis->range().upper) + 1;
    const std::array<QPointF, 3> triangle{QPointF(x, top),
        QPointF(x - kAboveMarkWidth / 2, top + kAboveMarkHeight),
        QPointF(x + kAboveMarkWidth / 2, top + kAboveMarkHeight)};
    painter.drawPolygon(triangle.data(), static_cast<int>(triangle.size()));
}

// For each column of pixels, the heights are marked in a list of rows, and each run of marked rows
// becomes one rectangle.
void LayerPlottable::drawColumns(QCPPainter &painter, const Rows &rows) const
{
    const double ratio = mParentPlot->bufferDevicePixelRatio();
    std::vector<char> marked(static_cast<std::size_t>((rows.bottom - rows.top) * ratio) + 2);
    constexpr int kNone = std::numeric_limits<int>::min();
    int column = kNone;
    double lastAbove = -kAboveMarkWidth;
    const auto finishColumn = [&] {
        for (auto run = std::find(marked.begin(), marked.end(), 1); run != marked.end();) {
            const auto end = std::find(run, marked.end(), 0);
            const QRectF bar(column / ratio, rows.top + double(run - marked.begin()) / ratio,
                1 / ratio, double(end - run) / ratio);
            painter.fillRect(bar.adjusted(-1, -1, 1, 1), m_fill);
            std::fill(run, end, 0);
            run = std::find(end, marked.end(), 1);
        }
    };
    painter.setAntialiasing(false);
    forEachHeight([&](double x, int height) {
        const int at = static_cast<int>(x * ratio);
        if (at != column && column != kNone) {
            finishColumn();
        }
        column = at;
        if (!rows.isAbove(height)) {
            marked[static_cast<std::size_t>(std::max(0.0, rows.of(height) - rows.top) * ratio)] = 1;
        } else if (x - lastAbove >= kAboveMarkWidth) {
            drawAboveMark(painter, x);
            lastAbove = x;
        }
    });
    if (column != kNone) {
        finishColumn();
    }
}

void LayerPlottable::drawLegendIcon(QCPPainter *painter, const QRectF &rect) const
{
    preparePainter(*painter);
    drawMark(*painter, rect.center());
}

} // namespace ork2
