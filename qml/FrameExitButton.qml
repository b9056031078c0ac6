// SPDX-License-Identifier: GPL-3.0-or-later

// The one button in the lower right corner of a frame; text and size may be set by the window.
MyButton {
    id: button

    anchors.bottom: parent.bottom
    anchors.bottomMargin: 8
    anchors.right: parent.right
    anchors.rightMargin: 12
    height: 21
    text: "Выход"
    width: 95
    z: 1

    // Of the background alone: a shadow of the label would smudge it.
    SoftShadow {
        anchors.fill: button
        parent: button.parent
        source: button.background
        visible: button.visible
    }
}
