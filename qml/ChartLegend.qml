// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Names and colours of the two layers.
Rectangle {
    component LegendSquare: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        border.color: "black"
        border.width: 1
        height: 10
        width: 10
    }

    component LegendText: Text {
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        font.family: Theme.textFamily
        font.pixelSize: 14
    }

    color: Theme.panel
    height: 20
    objectName: "chartLegend"
    width: 350

    LegendSquare {
        id: firstSquare

        anchors.right: parent.horizontalCenter
        anchors.rightMargin: 110
        color: Theme.firstLayer
        objectName: "firstSquare"
    }

    LegendText {
        anchors.left: firstSquare.right
        objectName: "firstLegend"
        text: "Первый слой"
    }

    LegendSquare {
        id: secondSquare

        anchors.left: parent.horizontalCenter
        anchors.leftMargin: 20
        color: Theme.secondLayer
        objectName: "secondSquare"
    }

    LegendText {
        anchors.left: secondSquare.right
        objectName: "secondLegend"
        text: "Второй слой"
    }
}
