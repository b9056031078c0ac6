// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Error message over the chart; blinks at each call of show().
Text {
    id: banner

    function hide() {
        // Called with every good reading; a fade that has ended is not played again.
        if (opacity > 0)
            fadeOut.start();
        visible = false;
    }

    function show(message) {
        blink.complete();
        fadeOut.stop();
        blink.start();
        visible = true;
        text = message;
    }

    Accessible.name: text
    Accessible.role: Accessible.AlertMessage
    color: Theme.edgeTop
    font.family: Theme.textFamily
    font.pixelSize: 48
    objectName: "errorText"
    visible: false

    SequentialAnimation {
        id: blink

        objectName: "blink"

        NumberAnimation {
            duration: 300
            easing.type: Easing.InOutQuad
            from: 1
            property: "opacity"
            target: banner
            to: 0
        }

        NumberAnimation {
            duration: 300
            easing.type: Easing.InOutQuad
            from: 0
            property: "opacity"
            target: banner
            to: 1
        }
    }

    // Not seen, intentional: the banner hides at once, and the next blink brings the opacity back.
    NumberAnimation {
        id: fadeOut

        duration: 3000
        easing.type: Easing.OutQuad
        from: 1
        objectName: "fadeOut"
        property: "opacity"
        target: banner
        to: 0
    }
}
