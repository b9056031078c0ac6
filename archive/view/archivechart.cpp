// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivechart.h"

#include "bandplottable.h"
#include "counts.h"
#include "layerplottable.h"
#include "timeticker.h"

#include <QPdfWriter>

namespace ork2 {

namespace {

const QString kCursorLayer = QStringLiteral("cursor");
constexpr int kBandsHeight = 88; // pixels
constexpr int kLegendIconWidth = 12;
constexpr int kLegendSpace = 6;
constexpr int kLabelWidth = 85;   // pixels between the labels of the time axis
constexpr double kLogLowest = 10; // metres
constexpr double kLogHighest = 10000;
constexpr int kHeightStep = 500; // metres, of the top of the whole scale
constexpr double kPanStep = 0.25;
constexpr QSize kPictureSize(1600, 900); // pixels at scale 1
constexpr double kPictureRatio = 2;
constexpr QMarginsF kPageMargins(10, 10, 10, 10); // millimetres

QSharedPointer<QCPAxisTicker> logTicker()
{
    const QSharedPointer<QCPAxisTickerText> ticker(new QCPAxisTickerText);
    for (const int height :
        {10, 20, 30, 60, 100, 150, 200, 300, 500, 1000, 1500, 2000, 3000, 5000, 10000}) {
        ticker->addTick(height, QString::number(height));
    }
    ticker->setSubTickCount(0);
    return ticker;
}

} // namespace

ArchiveChart::ArchiveChart(const QTimeZone &zone, QWidget *parent)
    : QCustomPlot(parent)
    , m_zone(zone)
{
    QLocale russian(QLocale::Russian);
    russian.setNumberOptions(QLocale::OmitGroupSeparator);
    setLocale(russian);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAccessibleName(QStringLiteral("График высоты облаков"));
    addLayer(kCursorLayer, nullptr, QCustomPlot::limAbove);
    layer(kCursorLayer)->setMode(QCPLayer::lmBuffered);
    createLayout();
    createBands();
    createCursor();
    connect(m_heights->axis(QCPAxis::atBottom),
        QOverload<const QCPRange &>::of(&QCPAxis::rangeChanged), this, &ArchiveChart::limitRange);
    connect(this, &QCustomPlot::mouseWheel, this, [this] { Q_EMIT draggedOrZoomed(); });
    setScale(HeightScale::Usual);
    setStyle(ChartStyle::fromPalette(palette()));
}

void ArchiveChart::createLayout()
{
    plotLayout()->clear();
    m_title = new QCPTextElement(this);
    m_heights = new QCPAxisRect(this);
    m_bandRect = new QCPAxisRect(this);
    m_legend = new QCPLegend;
    auto *head = new QCPLayoutGrid;
    plotLayout()->addElement(0, 0, head); // first: gives its elements their plot
    head->addElement(0, 0, m_title);
    head->addElement(0, 1, m_legend);
    head->setColumnStretchFactor(1, 0.01);
    plotLayout()->addElement(1, 0, m_heights);
    plotLayout()->addElement(2, 0, m_bandRect);
    plotLayout()->setRowStretchFactor(0, 0.01);
    plotLayout()->setRowSpacing(2);
    m_title->setTextFlags(Qt::AlignLeft | Qt::AlignTop);
    m_title->setMargins(QMargins(8, 5, 0, 0)); // in line with the legend
    m_legend->setLayer(QStringLiteral("legend"));
    m_legend->setFillOrder(QCPLegend::foColumnsFirst);
    m_legend->setBorderPen(Qt::NoPen);
    m_legend->setBrush(Qt::NoBrush);
    m_heights->setRangeDrag(Qt::Horizontal);
    m_heights->setRangeZoom(Qt::Horizontal);
    setInteractions(QCP::iRangeDrag | QCP::iRangeZoom);
    QCPAxis *time = m_heights->axis(QCPAxis::atBottom);
    QCPAxis *height = m_heights->axis(QCPAxis::atLeft);
    time->setTicker(QSharedPointer<QCPAxisTicker>(new TimeTicker(m_zone)));
    time->setTickLabelPadding(7);
    // Before the labels are laid out: as many as there is room for.
    connect(this, &QCustomPlot::beforeReplot, this, [this, time] {
        time->ticker()->setTickCount(std::max(2, m_heights->width() / kLabelWidth));
        arrangeHead();
    });
    height->setLabel(QStringLiteral("Высота, м"));
    height->setNumberFormat(QStringLiteral("f"));
    height->setNumberPrecision(0);
    m_first = new LayerPlottable(time, height, m_history, Layer::First);
    m_second = new LayerPlottable(time, height, m_history, Layer::Second);
    m_first->setName(QStringLiteral("Первый слой"));
    m_second->setName(QStringLiteral("Второй слой"));
    m_first->addToLegend(m_legend);
    m_second->addToLegend(m_legend);
}

// The legend is beside the title if there is room for both, else below it.
void ArchiveChart::arrangeHead()
{
    auto *head = qobject_cast<QCPLayoutGrid *>(m_title->layout());
    const int needed = m_title->margins().left()
        + QFontMetrics(m_title->font()).horizontalAdvance(m_title->text())
        + m_legend->minimumOuterSizeHint().width();
    const bool beside = needed < viewport().width();
    if (beside != head->hasElement(0, 1)) {
        head->take(m_legend);
        head->simplify();
        head->addElement(beside ? 0 : 1, beside ? 1 : 0, m_legend);
        head->setColumnStretchFactor(head->columnCount() - 1, beside ? 0.01 : 1);
    }
}

void ArchiveChart::createBands()
{
    QCPAxis *time = m_bandRect->axis(QCPAxis::atBottom);
    QCPAxis *rows = m_bandRect->axis(QCPAxis::atLeft);
    m_bandRect->setMinimumSize(0, kBandsHeight);
    m_bandRect->setMaximumSize(QWIDGETSIZE_MAX, kBandsHeight);
    m_bandRect->setRangeDrag(Qt::Horizontal);
    m_bandRect->setRangeZoom(Qt::Horizontal);
    m_bandRect->setMinimumMargins(QMargins(0, 2, 0, 8));
    auto *group = new QCPMarginGroup(this);
    m_heights->setMarginGroup(QCP::msLeft | QCP::msRight, group);
    m_bandRect->setMarginGroup(QCP::msLeft | QCP::msRight, group);
    time->setTicker(QSharedPointer<QCPAxisTicker>(new TimeTicker(m_zone)));
    time->setTickLabels(false);
    time->setTicks(false);
    const QSharedPointer<QCPAxisTickerText> names(new QCPAxisTickerText);
    for (int row = 0; row < BandPlottable::kBandRows; ++row) {
        names->addTick(row + 0.5, BandPlottable::rowName(static_cast<BandPlottable::Row>(row)));
    }
    names->setSubTickCount(0);
    rows->setTicker(names);
    rows->setTickLength(0);
    rows->setRangeReversed(true);
    rows->setRange(0, BandPlottable::kBandRows);
    rows->grid()->setVisible(false);
    m_bands = new BandPlottable(time, rows, m_history);
    m_bands->removeFromLegend();
    QCPAxis *main = m_heights->axis(QCPAxis::atBottom);
    const auto changed = QOverload<const QCPRange &>::of(&QCPAxis::rangeChanged);
    const auto set = QOverload<const QCPRange &>::of(&QCPAxis::setRange);
    connect(main, changed, time, set);
    connect(time, changed, main, set);
}

void ArchiveChart::createCursor()
{
    const auto create = [this](QCPAxisRect *rect) {
        auto *line = new QCPItemStraightLine(this);
        line->setLayer(kCursorLayer);
        line->setClipAxisRect(rect);
        for (QCPItemPosition *point : {line->point1, line->point2}) {
            point->setAxisRect(rect);
            point->setAxes(rect->axis(QCPAxis::atBottom), rect->axis(QCPAxis::atLeft));
        }
        line->setVisible(false);
        return line;
    };
    m_cursor = create(m_heights);
    m_bandCursor = create(m_bandRect);
}

void ArchiveChart::setHistory(const History &history)
{
    m_history = history;
    applyScale();
    replot(rpQueuedReplot);
}

void ArchiveChart::setRange(qint64 from, qint64 to)
{
    m_heights->axis(QCPAxis::atBottom)
        ->setRange(static_cast<double>(from), static_cast<double>(to));
    replot(rpQueuedReplot);
}

qint64 ArchiveChart::from() const
{
    return static_cast<qint64>(m_heights->axis(QCPAxis::atBottom)->range().lower);
}

qint64 ArchiveChart::to() const
{
    return static_cast<qint64>(m_heights->axis(QCPAxis::atBottom)->range().upper);
}

void ArchiveChart::limitRange(const QCPRange &range)
{
    const double length = std::clamp(
        range.size(), static_cast<double>(kShortestRange), static_cast<double>(kLongestRange));
    if (std::abs(length - range.size()) > 1) {
        const double middle = range.center();
        m_heights->axis(QCPAxis::atBottom)->setRange(middle - length / 2, middle + length / 2);
        return;
    }
    applyScale();
    Q_EMIT rangeChanged(from(), to());
}

void ArchiveChart::setScale(HeightScale scale)
{
    m_scale = scale;
    applyScale();
    replot(rpQueuedReplot);
}

int ArchiveChart::highestVisible() const
{
    int highest = 0;
    m_history.forEach(from(), to() + 1, [&](const Sample &sample) {
        for (const LayerValue value : {sample.first, sample.second}) {
            highest = value.isHeight() ? std::max(highest, value.number()) : highest;
        }
    });
    return highest;
}

void ArchiveChart::applyScale()
{
    QCPAxis *axis = m_heights->axis(QCPAxis::atLeft);
    if (m_scale == HeightScale::Logarithmic) {
        axis->setScaleType(QCPAxis::stLogarithmic);
        axis->setTicker(logTicker());
        axis->setRange(kLogLowest, kLogHighest);
        return;
    }
    if (axis->scaleType() == QCPAxis::stLogarithmic || axis->range().lower != 0) {
        axis->setScaleType(QCPAxis::stLinear);
        axis->setTicker(QSharedPointer<QCPAxisTicker>(new QCPAxisTicker));
    }
    const int top = m_scale == HeightScale::Usual
        ? kUsualHeight
        : (highestVisible() / kHeightStep + 1) * kHeightStep;
    axis->setRange(0, top);
}

void ArchiveChart::setTitle(const QString &title)
{
    m_title->setText(title);
    replot(rpQueuedReplot);
}

void ArchiveChart::setNow(qint64 now)
{
    m_bands->setNow(now);
}

void ArchiveChart::zoom(double factor)
{
    const double half = static_cast<double>(to() - from()) / 2 / factor;
    const double middle = static_cast<double>(to() + from()) / 2;
    setRange(static_cast<qint64>(middle - half), static_cast<qint64>(middle + half));
    Q_EMIT draggedOrZoomed();
}

void ArchiveChart::pan(double part)
{
    const auto shift = static_cast<qint64>(static_cast<double>(to() - from()) * part);
    setRange(from() + shift, to() + shift);
    Q_EMIT draggedOrZoomed();
}

void ArchiveChart::setStyle(const ChartStyle &style)
{
    const QPen pen(style.text);
    const QPen grid(style.grid, 0);
    // In points, the device would scale it, and the painter of a page once more.
    QFont textFont = font();
    textFont.setPixelSize(QFontInfo(textFont).pixelSize());
    setBackground(style.background);
    for (QCPAxisRect *rect : {m_heights, m_bandRect}) {
        for (QCPAxis *axis : rect->axes()) {
            axis->setBasePen(pen);
            axis->setTickPen(pen);
            axis->setSubTickPen(pen);
            axis->setTickLabelColor(style.text);
            axis->setLabelColor(style.text);
            axis->setTickLabelFont(textFont);
            axis->setLabelFont(textFont);
            axis->grid()->setPen(grid);
            axis->grid()->setZeroLinePen(grid);
        }
        // A frame around the plot.
        for (const QCPAxis::AxisType type : {QCPAxis::atTop, QCPAxis::atRight}) {
            QCPAxis *axis = rect->axis(type);
            axis->setVisible(true);
            axis->setTicks(false);
            axis->setTickLabels(false);
        }
    }
    QFont titleFont = textFont;
    titleFont.setBold(true);
    m_title->setFont(titleFont);
    m_title->setTextColor(style.text);
    m_legend->setFont(textFont);
    const int height = QFontMetrics(textFont).height();
    m_legend->setIconSize(kLegendIconWidth, height);
    for (int index = 0; index < m_legend->itemCount(); ++index) {
        // Or the descenders would be cut off.
        m_legend->item(index)->setMinimumSize(0, height + kLegendSpace);
    }
    m_legend->setTextColor(style.text);
    m_first->setColors(style.firstLayer, style.background);
    m_second->setColors(style.secondLayer, style.background);
    m_bands->setStyle(style);
    for (QCPItemStraightLine *line : {m_cursor, m_bandCursor}) {
        line->setPen(QPen(style.text, 0, Qt::DashLine));
    }
    replot(rpQueuedReplot);
}

template <typename Function> void ArchiveChart::exported(Function function)
{
    const bool cursorShown = m_cursor->visible();
    for (QCPItemStraightLine *line : {m_cursor, m_bandCursor}) {
        line->setVisible(false);
    }
    setStyle(ChartStyle::paper());
    m_first->setAlwaysMarks(true);
    m_second->setAlwaysMarks(true);
    function();
    m_first->setAlwaysMarks(false);
    m_second->setAlwaysMarks(false);
    setStyle(ChartStyle::fromPalette(palette()));
    for (QCPItemStraightLine *line : {m_cursor, m_bandCursor}) {
        line->setVisible(cursorShown);
    }
}

bool ArchiveChart::writePng(QIODevice &device)
{
    QPixmap picture;
    exported(
        [&] { picture = toPixmap(kPictureSize.width(), kPictureSize.height(), kPictureRatio); });
    return picture.save(&device, "PNG");
}

bool ArchiveChart::writePdf(QIODevice &device)
{
    QPdfWriter page(&device);
    page.setPageSize(QPageSize(QPageSize::A4));
    page.setPageOrientation(QPageLayout::Landscape);
    page.setPageMargins(kPageMargins, QPageLayout::Millimeter);
    page.setCreator(QStringLiteral("Архив ОРК-2"));
    page.setTitle(m_title->text());
    return print(page);
}

bool ArchiveChart::print(QPagedPaintDevice &page)
{
    QCPPainter painter;
    if (!painter.begin(&page)) {
        return false;
    }
    exported([&] {
        // The chart is laid out in units of 1/96 inch.
        const int resolution = page.logicalDpiX();
        const QSize size = page.pageLayout().paintRectPixels(resolution).size();
        const double scale = resolution / 96.0;
        painter.setMode(QCPPainter::pmVectorized);
        painter.setMode(QCPPainter::pmNoCaching);
        painter.scale(scale, scale);
        toPainter(&painter, static_cast<int>(size.width() / scale),
            static_cast<int>(size.height() / scale));
    });
    return painter.end();
}

void ArchiveChart::moveCursor(qint64 time)
{
    m_cursorTime = time;
    for (QCPItemStraightLine *line : {m_cursor, m_bandCursor}) {
        line->setVisible(time != 0);
        line->point1->setCoords(static_cast<double>(time), 1);
        line->point2->setCoords(static_cast<double>(time), 2);
    }
    layer(kCursorLayer)->replot();
    Q_EMIT cursorMoved(time);
}

void ArchiveChart::changeEvent(QEvent *event)
{
    QCustomPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange) {
        setStyle(ChartStyle::fromPalette(palette()));
    }
}

void ArchiveChart::mouseMoveEvent(QMouseEvent *event)
{
    QCustomPlot::mouseMoveEvent(event);
    if (event->buttons() != Qt::NoButton) {
        Q_EMIT draggedOrZoomed();
    }
    const QPointF place = event->position();
    const bool inside = place.x() >= m_heights->left() && place.x() <= m_heights->right();
    moveCursor(inside
            ? static_cast<qint64>(m_heights->axis(QCPAxis::atBottom)->pixelToCoord(place.x()))
            : 0);
}

void ArchiveChart::leaveEvent(QEvent *event)
{
    QCustomPlot::leaveEvent(event);
    moveCursor(0);
}

void ArchiveChart::keyPressEvent(QKeyEvent *event)
{
    const bool moves = event->key() == Qt::Key_Left || event->key() == Qt::Key_Right;
    const int direction = event->key() == Qt::Key_Left ? -1 : 1;
    if (moves && event->modifiers().testFlag(Qt::ShiftModifier)) {
        pan(direction * kPanStep);
    } else if (moves) {
        // One minute, or one pixel if it is longer.
        const qint64 step =
            std::max(kSecondsPerMinute, (to() - from()) / std::max(1, m_heights->width()));
        const qint64 start = m_cursorTime != 0 ? m_cursorTime : (from() + to()) / 2;
        moveCursor(std::clamp(start + direction * step, from(), to()));
    } else if (event->key() == Qt::Key_Home) {
        moveCursor(from());
    } else if (event->key() == Qt::Key_End) {
        moveCursor(to());
    } else if (event->key() == Qt::Key_Plus || event->key() == Qt::Key_Equal) {
        zoom(kZoomStep);
    } else if (event->key() == Qt::Key_Minus) {
        zoom(1 / kZoomStep);
    } else {
        QCustomPlot::keyPressEvent(event);
    }
}

} // namespace ork2
