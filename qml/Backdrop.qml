// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick

// Caches content that rarely changes as one texture, so that an animation above it does not redraw
// it. Its parent must be a direct child of the window.
Item {
    id: backdrop

    default property alias content: area.data

    clip: true

    // Multiples of 4 are whole pixels at scales of 1.25, 1.5 and 1.75 too, so that the picture is as
    // sharp as its content. It starts and ends at such positions in the window.
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
