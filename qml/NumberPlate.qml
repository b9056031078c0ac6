// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// The instrument's plate with its number and its year of make.
Item {
    id: plate

    property string unitNumber
    property string unitYear

    component PlateBox: Rectangle {
        id: box

        required property string name
        property alias text: boxText.text

        Accessible.name: name + ": " + text
        Accessible.role: Accessible.StaticText
        border.color: "black"
        border.width: 1
        clip: true
        color: Theme.panel
        height: 20
        width: 58
        y: 60

        Text {
            id: boxText

            readonly property int room: box.width - 4

            anchors.centerIn: parent
            elide: Text.ElideRight
            font.family: Theme.textFamily
            font.pointSize: 12
            objectName: "plateText"
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, room)
        }

        HoverHandler {
            id: boxHover
        }

        FullText {
            font: boxText.font
            hovered: boxHover.hovered
            shortened: boxText.truncated
            text: box.text
        }
    }

    Accessible.name: "Номер прибора: " + unitNumber + ", год выпуска: " + unitYear
    Accessible.role: Accessible.StaticText
    height: 90
    width: 190

    SoftShadow {
        anchors.fill: picture
        shadowBlur: 0.2
        source: picture
    }

    Image {
        id: picture

        anchors.fill: parent
        fillMode: Image.Stretch
        source: "qrc:/img/num.png"
    }

    PlateBox {
        name: "Номер прибора"
        objectName: "numberBox"
        text: plate.unitNumber
        x: 14
    }

    PlateBox {
        name: "Год выпуска"
        objectName: "yearBox"
        text: plate.unitYear
        x: 112
    }
}
