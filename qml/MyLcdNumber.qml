// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Effects

// Digital read-out with a caption above its box; the digits pulse when the value changes.
Item {
    id: lcd

    property int foo1: 0
    property int foo2: 0
    property string itemColor: "white"
    property string lcdData: "----"
    property string lcdText: "Параметр"
    // Shows the digits if it is set; covers the parent of the read-out.
    property Item foreground: null

    Accessible.name: lcdText + ": " + lcdData
    Accessible.role: Accessible.StaticText
    height: 60
    width: 150

    Behavior on foo1 {
        FadeAnimation {
            target: value
        }
    }
    Behavior on foo2 {
        FadeAnimation {
            target: valueShadow
        }
    }

    onLcdDataChanged: {
        foo1++;
        foo2++;
    }

    FontLoader {
        id: fontDigital

        source: "qrc:/settings/Fonts/DS-Digital/DS-DIGI.TTF"
    }

    // Loaded but not used.
    FontLoader {
        id: fontGost

        source: "qrc:/settings/Fonts/GOST/GOST_B.TTF"
    }

    SoftShadow {
        anchors.fill: box
        shadowBlur: 0.3
        source: box
    }

    Rectangle {
        id: box

        anchors.fill: parent
        color: lcd.itemColor
        radius: 5
    }

    Text {
        id: caption

        anchors.horizontalCenter: box.horizontalCenter
        anchors.top: box.top
        anchors.topMargin: -35
        color: "black"
        font.pixelSize: 18
        text: lcd.lcdText
        textFormat: Text.PlainText
    }

    Item {
        height: lcd.height
        objectName: "digits"
        parent: lcd.foreground ? lcd.foreground : lcd
        width: lcd.width
        x: lcd.foreground ? lcd.x : 0
        y: lcd.foreground ? lcd.y : 0

        Text {
            id: value

            anchors.centerIn: parent
            color: "black"
            font.family: fontDigital.font.family
            font.pixelSize: 50
            text: lcd.lcdData
            textFormat: Text.PlainText
        }

        // On top of the value: digits drawn only once have coloured edges.
        MultiEffect {
            id: valueShadow

            anchors.fill: value
            autoPaddingEnabled: false
            // The default leaves room for the largest blur, 52 pixels, which are drawn for nothing.
            paddingRect: Qt.rect(8, 8, 16, 16)
            shadowBlur: 0.1
            shadowColor: Theme.panel
            shadowEnabled: true
            shadowHorizontalOffset: 1
            shadowVerticalOffset: 1
            source: value
        }
    }
}
