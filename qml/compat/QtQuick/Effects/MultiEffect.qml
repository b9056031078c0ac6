// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Qt5Compat.GraphicalEffects

// Replacement for Qt's effect of the same name, as far as the documents use it. An effect that is off
// needs no pass.
Item {
    id: effect

    property bool autoPaddingEnabled: true
    property real blur: 0
    property bool blurEnabled: false
    property int blurMax: 32
    // x and y are used, for both sides.
    property rect paddingRect
    property real brightness: 0
    property real saturation: 0
    property real shadowBlur: 1
    property color shadowColor: "black"
    property bool shadowEnabled: false
    property real shadowHorizontalOffset: 0
    property real shadowOpacity: 1
    property real shadowScale: 1
    property real shadowVerticalOffset: 0
    property Item source: null

    readonly property real blurRadius: blurEnabled ? blur * blurMax : 0
    readonly property real shadowRadius: shadowEnabled ? shadowBlur * blurMax : 0
    readonly property bool layered: source instanceof ShaderEffectSource
    readonly property bool spreads: autoPaddingEnabled && (blurEnabled || shadowEnabled)
    readonly property int padding: spreads ? alignedUp(0.8 * blurMax)
                                           : autoPaddingEnabled ? 0 : alignedUp(paddingRect.x)
    readonly property size paddedSize: Qt.size(alignedUp(width + 2 * padding),
                                               alignedUp(height + 2 * padding))

    // Multiples of 4 are whole pixels at scales of 1.25, 1.5 and 1.75 too, so that the picture stays
    // as sharp as its source.
    function alignedUp(length) {
        return Math.ceil(length / 4) * 4;
    }

    // The source of a layer has no size; this item gives it one.
    ShaderEffect {
        id: layerPicture

        readonly property var source: effect.layered ? effect.source : null

        height: effect.height
        visible: false
        width: effect.width
    }

    ShaderEffectSource {
        id: input

        readonly property real horizontalScale: sourceItem && effect.width > 0
                                                ? sourceItem.width / effect.width : 1
        readonly property real verticalScale: sourceItem && effect.height > 0
                                              ? sourceItem.height / effect.height : 1

        height: effect.paddedSize.height
        sourceItem: effect.layered ? layerPicture : effect.source
        sourceRect: Qt.rect(-effect.padding * horizontalScale, -effect.padding * verticalScale,
                            effect.paddedSize.width * horizontalScale,
                            effect.paddedSize.height * verticalScale)
        visible: false
        width: effect.paddedSize.width
    }

    Loader {
        id: bodyBlur

        active: effect.blurRadius > 0

        // qmllint disable unqualified
        sourceComponent: FastBlur {
            height: input.height
            layer.enabled: true
            radius: effect.blurRadius
            source: input
            visible: false
            width: input.width
        }
        // qmllint enable unqualified
    }

    Loader {
        id: shadowBlurred

        active: effect.shadowRadius > 0

        // qmllint disable unqualified
        sourceComponent: FastBlur {
            height: input.height
            layer.enabled: true
            radius: effect.shadowRadius
            source: input
            visible: false
            width: input.width
        }
        // qmllint enable unqualified
    }

    ShaderEffect {
        readonly property var body: bodyBlur.item ? bodyBlur.item : input
        readonly property real brightness: effect.brightness
        readonly property real saturation: effect.saturation
        readonly property var shadow: shadowBlurred.item ? shadowBlurred.item : input
        readonly property point shadowCenter: Qt.point((effect.padding + effect.width / 2) / width,
                                                       (effect.padding + effect.height / 2) / height)
        readonly property color shadowColor: Qt.rgba(effect.shadowColor.r, effect.shadowColor.g,
                                                     effect.shadowColor.b, 1)
        readonly property point shadowOffset: Qt.point(effect.shadowHorizontalOffset / width,
                                                       effect.shadowVerticalOffset / height)
        readonly property real shadowScale: effect.shadowScale
        readonly property real shadowStrength: effect.shadowEnabled
                                               ? effect.shadowColor.a * effect.shadowOpacity : 0

        fragmentShader: "qrc:/compat/QtQuick/Effects/multieffect.frag.qsb"
        height: effect.paddedSize.height
        width: effect.paddedSize.width
        x: -effect.padding
        y: -effect.padding
    }
}
