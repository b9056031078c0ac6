// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// A light panel and the edge of its shadow.
Item {
    SoftShadow {
        id: shadow

        anchors.fill: face
        source: face
        visible: false
    }

    OuterEdge {
        anchors.fill: face
        effect: shadow
    }

    Rectangle {
        id: face

        anchors.fill: parent
        color: Theme.panel
        radius: 4
    }
}
