// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "chartstyle.h"
#include "history.h"

#include "plot.h"
#include <QTimeZone>

namespace ork2 {

class BandPlottable;
class LayerPlottable;

enum class HeightScale { Usual, Whole, Logarithmic };

inline constexpr int kUsualHeight = 3000; // metres, top of the usual scale
inline constexpr double kZoomStep = 1.5;
inline constexpr qint64 kShortestRange = 600;                 // seconds
inline constexpr qint64 kLongestRange = 400 * kSecondsPerDay; // seconds

// Both layers and the bands over time. The range is changed by the wheel, by dragging and with the
// keyboard; the mouse and the arrow keys move a cursor.
class ArchiveChart : public QCustomPlot
{
    Q_OBJECT

public:
    explicit ArchiveChart(const QTimeZone &zone, QWidget *parent = nullptr);

    void setHistory(const History &history);
    [[nodiscard]] const History &history() const { return m_history; }
    // Seconds since the epoch; limited to the shortest and longest range around the middle.
    void setRange(qint64 from, qint64 to);
    [[nodiscard]] qint64 from() const;
    [[nodiscard]] qint64 to() const;
    void setScale(HeightScale scale);
    [[nodiscard]] HeightScale scale() const { return m_scale; }
    void setTitle(const QString &title);
    // Minutes later than this are not missing.
    void setNow(qint64 now);
    [[nodiscard]] qint64 cursorTime() const { return m_cursorTime; } // 0: none
    static constexpr double kZoomStep = 1.5;                         // factor of one step
    void zoom(double factor);                                        // > 1: shorter range
    void pan(double part);                                           // of the range; > 0: later
    void setStyle(const ChartStyle &style);

    // Draw marks, black on white, without the cursor. Return false if the device reports an error.
    [[nodiscard]] bool writePng(QIODevice &device);
    [[nodiscard]] bool writePdf(QIODevice &device);
    // A page of a printer or document.
    [[nodiscard]] bool print(QPagedPaintDevice &page);

Q_SIGNALS:
    void rangeChanged(qint64 from, qint64 to);
    void draggedOrZoomed(); // by the user
    // time is that of the cursor, 0 if the mouse left the chart.
    void cursorMoved(qint64 time);

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void leaveEvent(QEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

private:
    void createLayout();
    void arrangeHead();
    void createBands();
    void createCursor();
    void limitRange(const QCPRange &range);
    void applyScale();
    void moveCursor(qint64 time);
    template <typename Function> void exported(Function function);
    [[nodiscard]] int highestVisible() const;

    QTimeZone m_zone;
    History m_history;
    HeightScale m_scale = HeightScale::Usual;
    QCPTextElement *m_title = nullptr;
    QCPLegend *m_legend = nullptr;
    QCPAxisRect *m_heights = nullptr;
    QCPAxisRect *m_bandRect = nullptr;
    LayerPlottable *m_first = nullptr;
    LayerPlottable *m_second = nullptr;
    BandPlottable *m_bands = nullptr;
    QCPItemStraightLine *m_cursor = nullptr;
    QCPItemStraightLine *m_bandCursor = nullptr;
    qint64 m_cursorTime = 0;
};

} // namespace ork2
