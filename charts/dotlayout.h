// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QPoint>
#include <QPointF>
#include <QSizeF>

namespace ork2 {

// Which part of the chart's coordinates a plot area shows, and where on the screen it is.
struct PlotArea
{
    qreal latest = 0;    // time at the right edge, ms since the epoch
    qreal timeScale = 0; // share of the width that one millisecond takes
    qreal lowest = 0;    // height at the lower edge, metres
    qreal highest = 0;   // height at the upper edge, metres
    QPointF corner;      // top left, in device pixels of the window
    QSizeF size;         // in device pixels
};

// A dot in device pixels of the window.
struct Dot
{
    QPoint corner; // top left of the pixels that the dot covers
    bool glows = false;
};

// The dots of a time series in a plot area: only points whose middle is inside it. Each dot is
// moved to whole pixels, by up to half a pixel in each direction, so that all dots look the same.
// The points are (ms since the epoch, metres); the diameter is in device pixels.
// Where dots are close to each other, not every dot glows: the sum of their glows would be a solid
// band.
[[nodiscard]] QList<Dot> dotsInArea(
    const QList<QPointF> &points, const PlotArea &area, int diameter);

} // namespace ork2
