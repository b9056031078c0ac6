// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Red background of a window.
Rectangle {
    id: background

    property color lowerColor: Theme.edgeBottom

    anchors.fill: parent
    color: Theme.edge
    gradient: Gradient {
        GradientStop {
            color: Theme.edgeTop
            position: 0.0
        }
        GradientStop {
            color: background.lowerColor
            position: 1.0
        }
    }
}
