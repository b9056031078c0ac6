// SPDX-License-Identifier: GPL-3.0-or-later
#include "bandplottable.h"

#include "counts.h"

namespace ork2 {

namespace {

constexpr double kRowMargin = 2; // pixels between a row and its bands
constexpr int kLabelMargin = 6;
constexpr qint64 kLongestPause = 90; // seconds between two lines without a missing minute

int codeOf(const Sample &sample)
{
    return sample.first.isCode() ? sample.first.number() : sample.second.number();
}

Qt::BrushStyle patternOfCode(int code)
{
    if (code == kNoFlashCode) {
        return Qt::DiagCrossPattern;
    }
    return code == kNotReadyCode ? Qt::HorPattern : Qt::Dense4Pattern;
}

} // namespace

// Joins the minutes of one row that touch on the screen.
class BandPlottable::Spans
{
public:
    Spans(const BandPlottable &bands, QCPPainter &painter, Row row)
        : m_bands(bands)
        , m_painter(painter)
        , m_row(row)
        , m_joined(bands.mKeyAxis->range().size() / bands.mKeyAxis->axisRect()->width() / 2)
    { }
    Spans(const Spans &) = delete;
    Spans &operator=(const Spans &) = delete;
    ~Spans() { finish(); }

    // In seconds since the epoch. Spans must be added in the order of their times.
    void add(qint64 from, qint64 to, int code = 0)
    {
        if (m_open && code == m_code && static_cast<double>(from - m_to) <= m_joined) {
            m_to = std::max(m_to, to);
            return;
        }
        finish();
        m_open = true;
        m_from = from;
        m_to = to;
        m_code = code;
    }

private:
    void finish()
    {
        if (m_open) {
            const QCPAxis &axis = *m_bands.mKeyAxis;
            m_bands.drawSpan(m_painter, m_row, axis.coordToPixel(static_cast<double>(m_from)),
                axis.coordToPixel(static_cast<double>(m_to)), m_code);
        }
    }

    const BandPlottable &m_bands;
    QCPPainter &m_painter;
    Row m_row;
    bool m_open = false;
    double m_joined; // a shorter pause, in seconds, cannot be seen
    qint64 m_from = 0;
    qint64 m_to = 0;
    int m_code = 0;
};

QString BandPlottable::rowName(Row row)
{
    switch (row) {
    case NoCloud:
        return QStringLiteral("Облаков нет");
    case NoData:
        return QStringLiteral("Нет данных");
    case Reserve:
        return QStringLiteral("Резерв");
    case Codes:
        break;
    }
    return QStringLiteral("Коды");
}

void BandPlottable::draw(QCPPainter *painter)
{
    const auto from = static_cast<qint64>(mKeyAxis->range().lower);
    const qint64 to = std::min(static_cast<qint64>(mKeyAxis->range().upper) + 1, m_now);
    Spans noCloud(*this, *painter, NoCloud);
    Spans noData(*this, *painter, NoData);
    Spans reserve(*this, *painter, Reserve);
    Spans codes(*this, *painter, Codes);
    qint64 end = from; // of the last minute with a line
    history().forEach(from - kLongestPause, to, [&](const Sample &sample) {
        const qint64 minuteEnd = sample.time + kSecondsPerMinute;
        if (sample.time - end > kLongestPause - kSecondsPerMinute) {
            noData.add(end, sample.time);
        }
        end = minuteEnd;
        if (isNoCloud(sample)) {
            noCloud.add(sample.time, minuteEnd);
        }
        if (sample.channel == RecordChannel::Reserve) {
            reserve.add(sample.time, minuteEnd);
        }
        if (hasCode(sample)) {
            codes.add(sample.time, minuteEnd, codeOf(sample));
        }
    });
    if (to - end > kLongestPause - kSecondsPerMinute) {
        noData.add(end, to);
    }
}

void BandPlottable::drawSpan(QCPPainter &painter, Row row, double from, double to, int code) const
{
    const double top = mValueAxis->coordToPixel(row) + kRowMargin;
    const double bottom = mValueAxis->coordToPixel(row + 1) - kRowMargin;
    const QRectF band(from, top, std::max(1.0, to - from), bottom - top);
    painter.setAntialiasing(false);
    const QColor mild = ChartStyle::blend(m_style.text, m_style.background, 0.6);
    QBrush brush(mild, Qt::BDiagPattern);
    QPen pen(mild);
    if (row == NoCloud) {
        brush = ChartStyle::blend(m_style.firstLayer, m_style.background, 0.2);
        pen.setColor(m_style.firstLayer);
    } else if (row == Reserve) {
        brush = m_style.reserve;
        pen.setColor(m_style.reserve);
    } else if (row == Codes) {
        brush = QBrush(m_style.text, patternOfCode(code));
        pen.setColor(m_style.text);
    }
    painter.setPen(pen);
    painter.setBrush(brush);
    painter.drawRect(band);
    const QString label = QString::number(code);
    const int width = painter.fontMetrics().horizontalAdvance(label) + 2 * kLabelMargin;
    if (row == Codes && width < band.width()) {
        QRectF box(0, 0, width, band.height());
        box.moveCenter(band.center());
        painter.fillRect(box, m_style.background);
        painter.drawText(box, Qt::AlignCenter, label);
    }
}

void BandPlottable::drawLegendIcon(QCPPainter *, const QRectF &) const
{ }

} // namespace ork2
