// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Frame of the secondary windows: a red edge around a light panel; children land on the panel.
Rectangle {
    id: frame

    default property alias content: panel.data
    property color lowerColor: "#b82222"
    readonly property alias panel: panel

    anchors.fill: parent
    color: "#b22222"
    gradient: Gradient {
        GradientStop {
            position: 0.0
            color: "#a02222"
        }
        GradientStop {
            position: 1.0
            color: frame.lowerColor
        }
    }

    Rectangle {
        id: panel

        anchors.fill: parent
        anchors.margins: 8
        color: "#eeeeee"
        radius: 4
    }
}
