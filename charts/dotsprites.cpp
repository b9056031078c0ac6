// SPDX-License-Identifier: GPL-3.0-or-later
#include "dotsprites.h"

#include <QtMath>

#include <algorithm>
#include <vector>

namespace ork2 {

namespace {

constexpr qreal kDiameter = 5;
constexpr qreal kSigma = 3.05;
constexpr qreal kRadius = 8;
constexpr qreal kSpread = 0.25;
constexpr qreal kVisibleGlow = 7; // around the dot; beyond it, at most 1 %
constexpr int kSamples = 8;       // in each direction of a pixel, for smooth edges

// The share of each pixel that is covered by a disc of the diameter, in the middle of a square.
std::vector<qreal> disc(int side, int diameter)
{
    std::vector<qreal> coverage(static_cast<std::size_t>(side) * side);
    const qreal radius = diameter / 2.0;
    for (int i = 0; i < side * side * kSamples * kSamples; ++i) {
        const int column = i % (side * kSamples);
        const int row = i / (side * kSamples);
        const qreal x = (column + 0.5) / kSamples - side / 2.0;
        const qreal y = (row + 0.5) / kSamples - side / 2.0;
        const bool inside = x * x + y * y < radius * radius;
        coverage[static_cast<std::size_t>(row / kSamples) * side + column / kSamples] +=
            inside ? 1.0 / (kSamples * kSamples) : 0;
    }
    return coverage;
}

// By distance in pixels; the sum over both directions is 1.
std::vector<qreal> gaussianWeights(qreal sigma, int reach)
{
    std::vector<qreal> weights{1};
    qreal sum = 1;
    for (int i = 1; i <= reach; ++i) {
        weights.push_back(qExp(-i * i / (2 * sigma * sigma)));
        sum += 2 * weights.back();
    }
    for (qreal &weight : weights) {
        weight /= sum;
    }
    return weights;
}

// Blurs each row and transposes the square, so that a second call blurs the columns.
std::vector<qreal> blurredRows(const std::vector<qreal> &square, int side, qreal devicePixelRatio)
{
    const qreal strength = 1 / (1 - 0.98 * kSpread);
    const int reach = qRound(kRadius * devicePixelRatio);
    const std::vector<qreal> weights = gaussianWeights(kSigma * devicePixelRatio, reach);
    std::vector<qreal> blurred(square.size());
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            qreal sum = 0;
            for (int i = std::max(-reach, -x); i <= std::min(reach, side - 1 - x); ++i) {
                sum += weights[static_cast<std::size_t>(qAbs(i))]
                    * square[static_cast<std::size_t>(y) * side + x + i];
            }
            blurred[static_cast<std::size_t>(x) * side + y] = std::min(1.0, sum * strength);
        }
    }
    return blurred;
}

} // namespace

DotSprites::DotSprites(const QColor &color, qreal devicePixelRatio)
    : diameter(qRound(kDiameter * devicePixelRatio))
    , glowWidth(qCeil(kVisibleGlow * devicePixelRatio))
    , glowing(0, 0, diameter + 2 * glowWidth, diameter + 2 * glowWidth)
    , plain(glowing.width(), 0, diameter, diameter)
    , image(glowing.width() + diameter, glowing.height(), QImage::Format_ARGB32_Premultiplied)
{
    const int side = glowing.width();
    const std::vector<qreal> dot = disc(side, diameter);
    const std::vector<qreal> glow =
        blurredRows(blurredRows(dot, side, devicePixelRatio), side, devicePixelRatio);
    const auto pixel = [&color](qreal alpha) {
        QColor shade = color;
        shade.setAlphaF(static_cast<float>(alpha));
        return shade;
    };
    image.fill(Qt::transparent);
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            const auto at = static_cast<std::size_t>(y) * side + x;
            image.setPixelColor(x, y, pixel(dot[at] + glow[at] * (1 - dot[at])));
            if (plain.contains(x - glowWidth + plain.x(), y - glowWidth + plain.y())) {
                image.setPixelColor(
                    x - glowWidth + plain.x(), y - glowWidth + plain.y(), pixel(dot[at]));
            }
        }
    }
}

} // namespace ork2
