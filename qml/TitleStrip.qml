// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// The main window's title on its strip; fades in whenever the window is shown.
Item {
    id: titleStrip

    readonly property alias color: strip.color
    property alias text: titleText.text

    height: 40

    SoftShadow {
        anchors.fill: strip
        source: strip
    }

    Rectangle {
        id: strip

        anchors.fill: parent
        color: Theme.panel
        objectName: "titleStrip"
        radius: 4
    }

    SoftShadow {
        id: titleShadow

        anchors.fill: titleText
        objectName: "titleShadow"
        shadowBlur: 0.1
        source: titleText
    }

    Text {
        id: titleText

        anchors.centerIn: strip
        font.family: Theme.textFamily
        font.pointSize: 20
        objectName: "titleText"
    }

    NumberAnimation {
        duration: 5000
        from: 0
        properties: "opacity"
        running: titleStrip.Window.visibility !== Window.Hidden
        targets: [titleText, titleShadow]
        to: 1
    }
}
