// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import Qt5Compat.GraphicalEffects

// Soft glow around the chart; the chart is drawn on top of it.
Item {
    Rectangle {
        id: frame

        anchors.fill: parent
        anchors.margins: 9
        radius: 5
        visible: false
    }

    Glow {
        id: glow

        anchors.fill: frame
        color: "#cccccc"
        radius: 15
        samples: 15
        source: frame
        spread: 0.25
        transparentBorder: true
        visible: false
    }

    OuterEdge {
        anchors.fill: frame
        effect: glow
    }
}
