// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Keeps what seldom changes as one picture, so that a movement over it does not draw it all anew.
// Its parent lies in the window itself.
Item {
    id: backdrop

    default property alias content: area.data

    clip: true

    // Multiples of 4 are whole pixels at scales of 1.25, 1.5 and 1.75 too, so that the picture is as
    // sharp as its content. It begins and ends at such places of the window.
    Item {
        readonly property real above: backdrop.parent ? backdrop.parent.y % 4 : 0

        height: Math.ceil((above + backdrop.height) / 4) * 4
        layer.enabled: true
        objectName: "backdropPicture"
        width: Math.ceil(backdrop.width / 4) * 4
        y: -above

        Item {
            id: area

            height: backdrop.height
            width: backdrop.width
            y: parent.above
        }
    }
}
