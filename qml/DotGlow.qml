// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Draws an item whose dots glow, each in its own colour: radius 8, 15 samples, spread 0.25. The blur
// works on half the pixels in each direction, which looks the same as the full resolution.
Item {
    id: dotGlow

    required property Item source

    readonly property int border: 16
    // How much brighter the glow is than its blur: a spread of 0.25.
    readonly property real strength: 1 / (1 - 0.98 * 0.25)
    // Multiples of 4 are whole pixels at scales of 1.25, 1.5 and 1.75 too.
    readonly property int fullHeight: Math.ceil((height + 2 * border) / 4) * 4
    readonly property int fullWidth: Math.ceil((width + 2 * border) / 4) * 4

    component Blur: ShaderEffect {
        property point pixels
        property var source
        property real strength

        fragmentShader: "qrc:/dotblur.frag.qsb"
        layer.enabled: true
        layer.smooth: true
        layer.textureSize: Qt.size(Math.floor(width / 2), Math.floor(height / 2))
        visible: false
    }

    ShaderEffectSource {
        id: dots

        height: dotGlow.fullHeight
        hideSource: true
        sourceItem: dotGlow.source
        sourceRect: Qt.rect(-dotGlow.border, -dotGlow.border, width, height)
        visible: false
        width: dotGlow.fullWidth
    }

    Blur {
        id: across

        height: dotGlow.fullHeight
        pixels: Qt.point(2 / width, 0)
        source: dots
        strength: dotGlow.strength
        width: dotGlow.fullWidth
    }

    Blur {
        id: blurred

        height: dotGlow.fullHeight
        pixels: Qt.point(0, 2 / height)
        source: across
        strength: dotGlow.strength
        width: dotGlow.fullWidth
    }

    ShaderEffect {
        readonly property var dots: dots
        readonly property var glow: blurred

        fragmentShader: "qrc:/dotglow.frag.qsb"
        height: dotGlow.fullHeight
        width: dotGlow.fullWidth
        x: -dotGlow.border
        y: -dotGlow.border
    }
}
