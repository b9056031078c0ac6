// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Frame of the secondary windows: a red edge around a light panel; children are placed on the panel.
RedBackground {
    id: frame

    default property alias content: panel.data
    readonly property alias panel: panel

    lowerColor: Theme.dialogEdge

    Rectangle {
        id: panel

        anchors.fill: parent
        anchors.margins: 8
        color: Theme.panel
        radius: 4
    }
}
