// SPDX-License-Identifier: GPL-3.0-or-later
pragma Singleton

import QtQuick

// Colours and the text font that several documents use.
QtObject {
    readonly property color dialogEdge: "#b82222" // lower end of a dialog's edge
    readonly property color edge: "#b22222"
    readonly property color edgeBottom: "#e82222"
    readonly property color edgeTop: "#a02222"
    readonly property color firstLayer: "#209FDF"
    readonly property color highlight: "#5E5F60"
    readonly property color lampOff: "#6f6f6f"
    readonly property color lampRim: "#4f4f4f"
    readonly property color panel: "#eeeeee"
    readonly property color secondLayer: "#9DCC5B"
    readonly property color text: "#252525"
    readonly property string textFamily: textFont.font.family
    readonly property FontLoader textFont: FontLoader {
        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }
    readonly property color window: "#efefef"
}
