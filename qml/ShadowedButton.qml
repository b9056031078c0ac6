// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// A button whose background casts a shadow; a shadow of the label would blur it.
MyButton {
    id: button

    z: 1

    SoftShadow {
        anchors.fill: button
        opacity: button.background.opacity
        parent: button.parent
        source: button.background
        visible: button.visible
    }
}
