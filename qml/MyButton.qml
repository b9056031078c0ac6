// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Templates as T

T.AbstractButton {
    id: control

    function pressByKey(event) {
        if (event.isAutoRepeat)
            return;
        if (checkable)
            toggle();
        clicked();
    }

    Accessible.name: text.replace(/\s*\n\s*/g, " ")
    Accessible.role: Accessible.Button
    Keys.onEnterPressed: event => pressByKey(event)
    Keys.onReturnPressed: event => pressByKey(event)
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    implicitHeight: implicitBackgroundHeight
    implicitWidth: implicitBackgroundWidth

    background: Rectangle {
        border.color: control.visualFocus ? Theme.edge : "black"
        border.width: control.visualFocus ? 2 : 1
        color: control.enabled && control.hovered ? Theme.highlight : "transparent"
        implicitHeight: 23
        implicitWidth: 92
        opacity: control.enabled ? 1 : 0.3
        radius: 3
    }
    contentItem: Text {
        elide: Text.ElideRight
        font.bold: control.down
        font.family: fontPalantino.font.family
        font.pointSize: control.font.pointSize
        horizontalAlignment: Text.AlignHCenter
        opacity: control.enabled ? 1.0 : 0.3
        text: qsTr(control.text)
        verticalAlignment: Text.AlignVCenter
    }

    // A disabled label keeps the colour it had.
    Binding {
        property: "color"
        restoreMode: Binding.RestoreNone
        target: control.contentItem
        value: control.hovered ? "#ffffff" : control.down ? "#fa4444" : "black"
        when: control.enabled
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }
}
