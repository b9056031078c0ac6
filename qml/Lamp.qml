// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// A round lamp that fades between grey and its colour.
Rectangle {
    id: lamp

    property bool lit: false
    property color litColor
    required property string name
    readonly property string stateText: lit ? "горит" : "не горит"
    property alias turnOff: turnOff
    property alias turnOn: turnOn

    // Called with every reading; a lamp that already shows it is left unchanged.
    function show(on) {
        if (on === lit)
            return;
        lit = on;
        turnOff.stop();
        turnOn.stop();
        (on ? turnOn : turnOff).start();
    }

    Accessible.description: stateText
    Accessible.name: name
    Accessible.role: Accessible.Indicator
    border.color: Theme.lampRim
    border.width: 1
    color: Theme.lampOff
    radius: width / 2

    ColorAnimation {
        id: turnOff

        duration: 500
        property: "color"
        target: lamp
        to: Theme.lampOff
    }

    ColorAnimation {
        id: turnOn

        duration: 500
        property: "color"
        target: lamp
        to: lamp.litColor
    }
}
