// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

namespace ork2 {

// The two pictures of a dot, side by side in one image: with its glow and without. The dot is
// round, with a diameter of 5, and its glow a Gaussian blur (sigma 3.05, radius 8) that a spread of
// 0.25 strengthens. These lengths are in logical pixels, all members are in device pixels.
struct DotSprites
{
    DotSprites(const QColor &color, qreal devicePixelRatio);

    int diameter;  // of the dot
    int glowWidth; // of the glow on each side of the dot
    QRect glowing; // place of the dot with its glow
    QRect plain;   // place of the dot without glow
    QImage image;  // premultiplied
};

} // namespace ork2
