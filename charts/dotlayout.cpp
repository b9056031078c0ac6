// SPDX-License-Identifier: GPL-3.0-or-later
#include "dotlayout.h"

#include <algorithm>

namespace ork2 {

namespace {

// With glows this far apart, in diameters, a row of dots looks like a blurred line.
constexpr qreal kGlowSpacing = 0.7;

bool hasGlowNear(const QList<Dot> &dots, QPoint corner, qreal spacing)
{
    // The points are in the order of time, so the nearest ones are at the end.
    for (qsizetype i = dots.size() - 1; i >= 0; --i) {
        const QPoint distance = corner - dots[i].corner;
        if (distance.x() >= spacing) {
            return false;
        }
        if (dots[i].glows && QPoint::dotProduct(distance, distance) < spacing * spacing) {
            return true;
        }
    }
    return false;
}

} // namespace

QList<Dot> dotsInArea(const QList<QPointF> &points, const PlotArea &area, int diameter)
{
    const QPointF toCorner(diameter / 2.0, diameter / 2.0);
    const qreal span = area.highest - area.lowest;
    QList<Dot> dots;
    for (const QPointF &point : points) {
        const QPointF share(
            1 - (area.latest - point.x()) * area.timeScale, (area.highest - point.y()) / span);
        if (!(share.x() >= 0 && share.x() <= 1 && share.y() >= 0 && share.y() <= 1)) {
            continue;
        }
        const QPointF middle =
            area.corner + QPointF(share.x() * area.size.width(), share.y() * area.size.height());
        const QPoint corner = (middle - toCorner).toPoint();
        dots.append({corner, !hasGlowNear(dots, corner, kGlowSpacing * diameter)});
    }
    return dots;
}

} // namespace ork2
