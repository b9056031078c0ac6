// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic

// One line of text at the lower edge of the main window.
Text {
    id: line

    property string status

    Accessible.ignored: true
    height: 24

    Row {
        anchors.fill: parent
        anchors.leftMargin: 8
        anchors.rightMargin: 8

        Label {
            Accessible.name: "Строка состояния: " + text.trim()
            Accessible.role: Accessible.StaticText
            color: Theme.text
            elide: Text.ElideRight
            font.family: Theme.textFamily
            height: parent.height
            maximumLineCount: 1
            objectName: "statusLabel"
            // The port's messages contain a tab and a carriage return, which are not shown.
            text: " " + line.status.replace(/[\r\n]+/g, "").replace(/\t/g, " ")
            textFormat: Text.PlainText
            verticalAlignment: Text.AlignVCenter
            width: parent.width
        }
    }
}
