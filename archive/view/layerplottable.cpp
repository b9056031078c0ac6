// SPDX-License-Identifier: GPL-3.0-or-later
#include "layerplottable.h"

#include "chartstyle.h"

#include <array>
#include <cmath>
#include <limits>

namespace ork2 {

namespace {

constexpr int kHeights = 10000; // 0 to 9999 m
constexpr double kMarkRadius = 2.5;
constexpr double kMarkExtent = 4; // with its outline
constexpr double kAboveMarkWidth = 8;
constexpr double kAboveMarkHeight = 6;
constexpr double kSecondsPerMark = 400; // longer pixels: bars, in which marks would merge anyway
constexpr double kVectorCells = 6.25;   // per 1/96 inch, that is 600 per inch: dots of a printer
constexpr int kOutlineDarkness = 125;
constexpr double kLightFill = 0.5;

} // namespace

// Places on a grid, so that marks at the same place are found. The cells are the pixels of a
// picture; those of a vector drawing are too small to be seen.
class LayerPlottable::Grid
{
public:
    static constexpr int kAbove = 0; // the row of all heights above the scale

    // The rows of all heights are computed once, so that a year needs no logarithms.
    Grid(const QCPAxis &axis, double cellsPerPixel)
        : m_cells(cellsPerPixel)
        , m_top(column(axis.coordToPixel(axis.range().upper)))
        , m_rows(kHeights)
    {
        const double top = axis.coordToPixel(axis.range().upper);
        for (int height = 0; height < kHeights; ++height) {
            const double y = axis.coordToPixel(std::max(double(height), axis.range().lower));
            const int row = 1 + std::max(0, column(y) - m_top);
            m_rows[static_cast<std::size_t>(height)] = y < top - 0.5 ? kAbove : row;
            m_count = std::max(m_count, row + 1);
        }
    }

    [[nodiscard]] double cellsPerPixel() const { return m_cells; }
    [[nodiscard]] int column(double x) const { return qRound(x * m_cells); }
    [[nodiscard]] int rowOf(int height) const { return m_rows[static_cast<std::size_t>(height)]; }
    [[nodiscard]] int rowCount() const { return m_count; }
    // In cells from the top of the drawing; the upper edge of the scale for kAbove.
    [[nodiscard]] int yOf(int row) const { return m_top + std::max(0, row - 1); }
    [[nodiscard]] double pixel(int cell) const { return cell / m_cells; }

private:
    double m_cells;
    int m_top;
    int m_count = 1;
    std::vector<int> m_rows;
};

LayerPlottable::LayerPlottable(
    QCPAxis *keyAxis, QCPAxis *valueAxis, const History &history, Layer layer)
    : HistoryPlottable(keyAxis, valueAxis, history)
    , m_layer(layer)
{ }

void LayerPlottable::setColors(const QColor &fill, const QColor &background)
{
    m_fill = fill;
    m_background = background;
    m_outline = background.lightness() < 128 ? fill.lighter(kOutlineDarkness)
                                             : fill.darker(kOutlineDarkness);
}

template <typename Function> void LayerPlottable::forEachHeight(Function function) const
{
    const QCPRange range = mKeyAxis->range();
    const double start = mKeyAxis->coordToPixel(range.lower);
    const double scale = (mKeyAxis->coordToPixel(range.upper) - start) / range.size();
    history().forEach(static_cast<qint64>(range.lower), static_cast<qint64>(range.upper) + 1,
        [&](const Sample &sample) {
            const LayerValue value = m_layer == Layer::First ? sample.first : sample.second;
            if (value.isHeight()) {
                function(start + (static_cast<double>(sample.time) - range.lower) * scale,
                    value.number());
            }
        });
}

// Calls function(column, rows) for the columns of the grid that have heights, from left to right.
// Each row occurs once; the one of the latest height is the last, as it is on top.
template <typename Function>
void LayerPlottable::forEachColumn(const Grid &grid, Function function) const
{
    std::vector<int> all;
    std::vector<int> rows;
    std::vector<char> seen(static_cast<std::size_t>(grid.rowCount()));
    int column = std::numeric_limits<int>::min();
    const auto finish = [&] {
        rows.clear();
        std::for_each(all.rbegin(), all.rend(), [&](int row) {
            char &known = seen[static_cast<std::size_t>(row)];
            if (known == 0) {
                rows.push_back(row);
            }
            known = 1;
        });
        for (const int row : rows) {
            seen[static_cast<std::size_t>(row)] = 0;
        }
        std::reverse(rows.begin(), rows.end());
        if (!rows.empty()) {
            function(column, rows);
        }
        all.clear();
    };
    forEachHeight([&](double x, int height) {
        const int at = grid.column(x);
        if (at != column) {
            finish();
            column = at;
        }
        all.push_back(grid.rowOf(height));
    });
    finish();
}

void LayerPlottable::draw(QCPPainter *painter)
{
    const double secondsPerPixel = mKeyAxis->range().size() / mKeyAxis->axisRect()->width();
    const double deviceScale = painter->deviceTransform().m11();
    if (!m_alwaysMarks && secondsPerPixel >= kSecondsPerMark) {
        drawBars(*painter, Grid(*mValueAxis, deviceScale));
    } else if (painter->modes().testFlag(QCPPainter::pmVectorized)) {
        drawMarks(*painter, Grid(*mValueAxis, kVectorCells));
    } else {
        drawMarksAsPixels(*painter, Grid(*mValueAxis, deviceScale));
    }
}

void LayerPlottable::preparePainter(QPainter &painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(m_outline, 1));
    painter.setBrush(
        m_layer == Layer::First ? m_fill : ChartStyle::blend(m_fill, m_background, kLightFill));
}

void LayerPlottable::drawMarks(QCPPainter &painter, const Grid &grid) const
{
    preparePainter(painter);
    forEachColumn(grid, [&](int column, const std::vector<int> &rows) {
        for (const int row : rows) {
            const QPointF place(grid.pixel(column), grid.pixel(grid.yOf(row)));
            if (row == Grid::kAbove) {
                drawAboveMark(painter, place);
            } else {
                drawMark(painter, place);
            }
        }
    });
}

// Draws each kind of mark once and copies it: a year has some 100,000 marks at different pixels,
// and each smooth outline would take ten times as long.
void LayerPlottable::drawMarksAsPixels(QCPPainter &painter, const Grid &grid) const
{
    const double scale = grid.cellsPerPixel();
    const QRectF plot = mKeyAxis->axisRect()->rect();
    const QRect cells = QRectF(plot.topLeft() * scale, plot.size() * scale).toAlignedRect();
    const QImage mark = stamp(scale, [this](QPainter &p) { drawMark(p, {}); });
    const QImage above = stamp(scale, [this](QPainter &p) { drawAboveMark(p, {}); });
    QImage picture(cells.size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter pixels(&picture);
    forEachColumn(grid, [&](int column, const std::vector<int> &rows) {
        for (const int row : rows) {
            const QImage &copied = row == Grid::kAbove ? above : mark;
            const QPoint center(copied.width() / 2, copied.height() / 2);
            pixels.drawImage(QPoint(column, grid.yOf(row)) - center - cells.topLeft(), copied);
        }
    });
    pixels.end();
    picture.setDevicePixelRatio(scale);
    painter.setAntialiasing(false); // otherwise moved by half a pixel
    painter.drawImage(QPointF(cells.topLeft()) / scale, picture);
}

// function draws a mark at (0, 0), the centre of the picture.
template <typename Function> QImage LayerPlottable::stamp(double scale, Function function) const
{
    const int half =
        static_cast<int>(std::ceil(std::max(kMarkExtent, kAboveMarkHeight + 2) * scale));
    QImage picture(2 * half, 2 * half, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    preparePainter(painter);
    painter.translate(half, half);
    painter.scale(scale, scale);
    function(painter);
    return picture;
}

// The first layer has filled circles, the second one squares with a light fill, so that they
// differ without colours.
void LayerPlottable::drawMark(QPainter &painter, QPointF place) const
{
    if (m_layer == Layer::First) {
        painter.drawEllipse(place, kMarkRadius, kMarkRadius);
    } else {
        painter.drawRect(QRectF(
            place.x() - kMarkRadius, place.y() - kMarkRadius, 2 * kMarkRadius, 2 * kMarkRadius));
    }
}

// tip is on the upper edge of the scale.
void LayerPlottable::drawAboveMark(QPainter &painter, QPointF tip) const
{
    const std::array<QPointF, 3> triangle{tip + QPointF(0, 1),
        tip + QPointF(-kAboveMarkWidth / 2, 1 + kAboveMarkHeight),
        tip + QPointF(kAboveMarkWidth / 2, 1 + kAboveMarkHeight)};
    painter.drawPolygon(triangle.data(), static_cast<int>(triangle.size()));
}

// Each run of neighbouring rows in a column becomes one rectangle.
void LayerPlottable::drawBars(QCPPainter &painter, const Grid &grid) const
{
    double lastAbove = -kAboveMarkWidth;
    std::vector<int> sorted;
    painter.setAntialiasing(false);
    forEachColumn(grid, [&](int column, const std::vector<int> &rows) {
        const double x = grid.pixel(column);
        sorted = rows;
        std::sort(sorted.begin(), sorted.end());
        auto run = std::upper_bound(sorted.begin(), sorted.end(), Grid::kAbove);
        if (run != sorted.begin() && x - lastAbove >= kAboveMarkWidth) {
            preparePainter(painter);
            drawAboveMark(painter, {x, grid.pixel(grid.yOf(Grid::kAbove))});
            lastAbove = x;
        }
        while (run != sorted.end()) {
            const auto end =
                std::adjacent_find(run, sorted.end(), [](int a, int b) { return b != a + 1; });
            const int last = end != sorted.end() ? *end : sorted.back();
            const QRectF bar(
                x, grid.pixel(grid.yOf(*run)), grid.pixel(1), grid.pixel(last - *run + 1));
            painter.fillRect(bar.adjusted(-1, -1, 1, 1), m_fill);
            run = end != sorted.end() ? end + 1 : end;
        }
    });
}

void LayerPlottable::drawLegendIcon(QCPPainter *painter, const QRectF &rect) const
{
    preparePainter(*painter);
    drawMark(*painter, rect.center());
}

} // namespace ork2
