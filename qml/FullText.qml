// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic

// Tool tip with the full text of an elided item. The text comes from outside the program, so it is
// shown as plain text.
ToolTip {
    id: tip

    required property bool hovered
    required property bool shortened

    delay: 500
    objectName: "fullText"
    visible: shortened && hovered
    width: Math.min(implicitWidth, 420)

    contentItem: Text {
        elide: Text.ElideRight
        font: tip.font
        maximumLineCount: 20
        text: tip.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }
}
