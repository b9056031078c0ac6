// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

Window {
    id: numberWindow

    readonly property font textFont: Qt.font({
        "family": fontPalantino.font.family,
        "pointSize": 14
    })
    property string uNumber: ""
    property string uYear: ""

    signal exitNumber

    component Caption: Rectangle {
        id: caption

        property alias text: label.text
        required property font textFont

        color: Theme.panel
        height: 50
        width: 300

        Text {
            id: label

            anchors.centerIn: parent
            font: caption.textFont
        }
    }

    component Entry: Rectangle {
        id: entry

        property alias focused: input.focus
        property alias input: input
        required property string name
        property alias text: input.text
        required property font textFont

        signal edited(string text)

        border.color: "black"
        border.width: 1
        color: Theme.panel
        height: 50
        radius: 5
        width: 100

        TextInput {
            id: input

            Accessible.name: entry.name
            Accessible.role: Accessible.EditableText
            activeFocusOnTab: true
            anchors.fill: parent
            anchors.margins: 4
            clip: true
            font: entry.textFont
            horizontalAlignment: TextInput.AlignHCenter
            selectByMouse: true
            verticalAlignment: TextInput.AlignVCenter

            onTextEdited: entry.edited(text)
        }
    }

    color: Theme.window
    height: 320
    flags: Qt.Dialog
    modality: Qt.WindowModal
    title: "Номер прибора"
    width: 480

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    RedFrame {
        Keys.onEscapePressed: numberWindow.close()

        Caption {
            id: numberCaption

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            anchors.topMargin: 20
            objectName: "numberCaption"
            text: "Введите номер прибора"
            textFont: numberWindow.textFont
        }

        Entry {
            id: numberEntry

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: numberCaption.bottom
            focused: true
            name: "Номер прибора"
            objectName: "numberEntry"
            text: numberWindow.uNumber
            textFont: numberWindow.textFont

            onEdited: text => numberWindow.uNumber = text
        }

        Caption {
            id: yearCaption

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: numberEntry.bottom
            anchors.topMargin: 5
            objectName: "yearCaption"
            text: "Введите год выпуска прибора"
            textFont: numberWindow.textFont
        }

        Entry {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: yearCaption.bottom
            name: "Год выпуска прибора"
            objectName: "yearEntry"
            text: numberWindow.uYear
            textFont: numberWindow.textFont

            onEdited: text => numberWindow.uYear = text
        }

        FrameExitButton {
            height: 23
            objectName: "saveButton"
            text: "Записать"
            width: 92

            onClicked: numberWindow.exitNumber()
        }
    }
}
