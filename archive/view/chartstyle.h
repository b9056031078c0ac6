// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QPalette>

namespace ork2 {

// Colours of the chart. The layers have the colours of the terminal's chart.
struct ChartStyle
{
    QColor background;
    QColor text;
    QColor grid;
    QColor firstLayer{0x20, 0x9F, 0xDF};
    QColor secondLayer{0x9D, 0xCC, 0x5B};
    QColor reserve{0xB2, 0x22, 0x22};

    [[nodiscard]] static ChartStyle fromPalette(const QPalette &palette)
    {
        ChartStyle style;
        style.background = palette.color(QPalette::Active, QPalette::Base);
        style.text = palette.color(QPalette::Active, QPalette::Text);
        style.grid = blend(style.text, style.background, 0.15);
        if (style.background.lightness() < 128) {
            style.reserve = QColor(0xE8, 0x5A, 0x5A);
        }
        return style;
    }

    // Black on white, for paper and files.
    [[nodiscard]] static ChartStyle paper()
    {
        ChartStyle style;
        style.background = Qt::white;
        style.text = Qt::black;
        style.grid = QColor(0xDD, 0xDD, 0xDD);
        return style;
    }

    // part of 1 is the first colour only.
    [[nodiscard]] static QColor blend(const QColor &first, const QColor &second, double part)
    {
        const auto mix = [part](int a, int b) { return qRound(a * part + b * (1 - part)); };
        return {mix(first.red(), second.red()), mix(first.green(), second.green()),
            mix(first.blue(), second.blue())};
    }
};

} // namespace ork2
