// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Qt5Compat.GraphicalEffects

// Soft shadow of an item, to be placed below it. Qt's MultiEffect also draws the item again, which
// thickens borders and letters, and since Qt 6.8 light shadows on a light panel have no rim.
Item {
    id: shadow

    property real blurMax: 32
    property real shadowBlur: 0.8
    property color shadowColor: "#eeeeee"
    property real shadowHorizontalOffset: 1
    property real shadowVerticalOffset: 1
    required property Item source
    property real strength: 1 // above 1: darker than the blur

    readonly property int padding: alignedUp(shadowBlur * blurMax + 2)

    // Multiples of 4 are whole pixels at scales of 1.25, 1.5 and 1.75 too.
    function alignedUp(length) {
        return Math.ceil(length / 4) * 4;
    }

    ShaderEffectSource {
        id: silhouette

        height: shadow.alignedUp(shadow.height + 2 * shadow.padding)
        sourceItem: shadow.source
        sourceRect: Qt.rect(-shadow.padding, -shadow.padding, width, height)
        visible: false
        width: shadow.alignedUp(shadow.width + 2 * shadow.padding)
    }

    FastBlur {
        id: blurred

        height: silhouette.height
        layer.enabled: true
        radius: shadow.shadowBlur * shadow.blurMax
        source: silhouette
        visible: false
        width: silhouette.width
    }

    ShaderEffect {
        readonly property color color: shadow.shadowColor
        readonly property point offset: Qt.point(shadow.shadowHorizontalOffset / width,
                                                 shadow.shadowVerticalOffset / height)
        readonly property var shade: blurred
        readonly property real strength: shadow.strength

        fragmentShader: "qrc:/softshadow.frag.qsb"
        height: silhouette.height
        width: silhouette.width
        x: -shadow.padding
        y: -shadow.padding
    }
}
