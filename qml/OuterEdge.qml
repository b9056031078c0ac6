// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Shows only that part of an effect that surrounds an opaque item. The rest is hidden under the item
// and would be blended with each frame for nothing.
Item {
    id: edge

    required property Item effect
    property int inside: 8
    property int outside: 32

    readonly property real innerHeight: height - 2 * inside
    readonly property real fullWidth: width + 2 * outside
    readonly property int thickness: inside + outside

    component Strip: ShaderEffectSource {
        sourceRect: Qt.rect(x, y, width, height)
    }

    Strip {
        height: edge.thickness
        sourceItem: edge.effect
        width: edge.fullWidth
        x: -edge.outside
        y: -edge.outside
    }

    Strip {
        height: edge.thickness
        sourceItem: edge.effect
        width: edge.fullWidth
        x: -edge.outside
        y: edge.height - edge.inside
    }

    Strip {
        height: edge.innerHeight
        sourceItem: edge.effect
        width: edge.thickness
        x: -edge.outside
        y: edge.inside
    }

    Strip {
        height: edge.innerHeight
        sourceItem: edge.effect
        width: edge.thickness
        x: edge.width - edge.inside
        y: edge.inside
    }
}
