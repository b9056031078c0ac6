// SPDX-License-Identifier: GPL-3.0-or-later

// The button in the lower right corner of a frame; a window may set text and size.
ShadowedButton {
    anchors.bottom: parent.bottom
    anchors.bottomMargin: 8
    anchors.right: parent.right
    anchors.rightMargin: 12
    height: 21
    text: "Выход"
    width: 95
}
