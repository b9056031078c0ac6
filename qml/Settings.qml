// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic

// The root's id hides the context property of the same name: the main document makes all calls.
Window {
    id: settings

    property string currentPortNum: "----"
    property string dataCpp: "----"
    property string dataFile: "----"
    property string portNum: "----"
    property bool wasActive: false

    signal exitSettings
    signal readFile
    signal setComNum

    function followActivity() {
        if (active === wasActive)
            return;
        wasActive = active;
        readFile();
    }

    color: Theme.window
    height: 420
    flags: Qt.Dialog
    modality: Qt.WindowModal
    title: "Параметры"
    width: 480

    onActiveChanged: followActivity()
    onCurrentPortNumChanged: portBox.updateShownText()
    // The list only grows, intentional: a port that is reported again is appended again.
    onDataCppChanged: portModel.append({
        "textInput": dataCpp
    })
    // A window that is closed becomes inactive without a signal, with some versions of Qt a moment
    // later.
    onVisibleChanged: Qt.callLater(followActivity) // qmllint disable

    FontLoader {
        source: "qrc:/settings/Fonts/GOST/GOST_B.TTF"
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    FontMetrics {
        id: fontMetrics

        font: fileText.font
    }

    ListModel {
        id: portModel
    }

    RedFrame {
        focus: true

        Keys.onEscapePressed: settings.close()

        Item {
            id: fileBox

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            anchors.topMargin: 10
            height: wholeText.height
            objectName: "fileBox"
            width: Math.ceil(wholeText.width)

            // Determines the size of the box, which may be wider than the panel.
            Text {
                id: wholeText

                font: fileText.font
                text: qsTr(settings.dataFile)
                textFormat: Text.PlainText
                visible: false
            }

            Text {
                id: fileText

                readonly property int edge: 6
                readonly property int room: fileBox.parent.width - 2 * edge

                Accessible.name: "Файл настроек: " + wholeText.text
                Accessible.role: Accessible.StaticText
                font.family: fontPalantino.font.family
                font.pointSize: 14
                objectName: "fileText"
                // Line by line, since Qt elides only the last line of a text.
                text: fileBox.width <= room ? wholeText.text : wholeText.text.split("\n").map(
                          line => fontMetrics.elidedText(line, Qt.ElideRight, room)).join("\n")
                textFormat: Text.PlainText
                x: Math.max(0, edge - fileBox.x)

                HoverHandler {
                    id: fileHover
                }

                FullText {
                    font: fileText.font
                    hovered: fileHover.hovered
                    shortened: fileText.text !== wholeText.text
                    text: wholeText.text
                }
            }
        }

        Text {
            id: portLabel

            anchors.right: portBox.left
            anchors.verticalCenter: portBox.verticalCenter
            font.family: fontPalantino.font.family
            font.pointSize: 14
            objectName: "portLabel"
            text: "Port:  "
        }

        ComboBox {
            id: portBox

            // Not a binding, since a change may in turn change the values it depends on.
            property string shownText: "----"

            // The port in use as long as none has been chosen.
            function chosenText() {
                return currentText !== "" ? currentText : settings.currentPortNum;
            }

            // Home, End and a letter would change the choice while the list is closed.
            function choosesUnseen(event) {
                const harmless = [Qt.Key_Tab, Qt.Key_Backtab, Qt.Key_Escape, Qt.Key_Return, Qt.Key_Enter, Qt.Key_Space];
                return !popup.visible && (event.key === Qt.Key_Home || event.key === Qt.Key_End
                                          || event.text !== "" && !harmless.includes(event.key));
            }

            function updateShownText() {
                const text = popup.visible ? chosenText() : settings.currentPortNum;
                if (text === shownText)
                    return;
                shownText = text;
                if (settings.currentPortNum !== chosenText()) {
                    settings.portNum = chosenText();
                    settings.currentPortNum = settings.portNum;
                } else {
                    settings.portNum = settings.currentPortNum;
                }
                settings.setComNum();
            }

            Accessible.name: "Порт"
            anchors.left: parent.left
            // Aligned with the file text unless that leaves no room for the label.
            anchors.leftMargin: Math.max(fileBox.x, portLabel.width + 6)
            anchors.top: fileBox.bottom
            anchors.topMargin: 20
            displayText: chosenText()
            font.family: fontPalantino.font.family
            font.pointSize: 14
            model: portModel
            objectName: "portBox"
            textRole: "textInput"

            background: Rectangle {
                border.color: portBox.pressed ? Theme.highlight : "black"
                border.width: portBox.visualFocus ? 2 : 1
                color: portBox.hovered ? Theme.highlight : "transparent"
                implicitHeight: 40
                implicitWidth: 120
                radius: 4
            }
            contentItem: Text {
                color: portBox.hovered ? "white" : "black"
                elide: Text.ElideRight
                font: portBox.font
                leftPadding: 8
                objectName: "portText"
                rightPadding: 4 + portBox.indicator.width
                text: portBox.shownText
                textFormat: Text.PlainText
                verticalAlignment: Text.AlignVCenter
            }
            delegate: ItemDelegate {
                id: row

                required property string textInput

                highlighted: ListView.isCurrentItem
                verticalPadding: 5
                width: ListView.view.width

                background: Rectangle {
                    border.color: Theme.highlight
                    border.width: row.highlighted ? 1 : 0
                    color: row.hovered ? Theme.highlight : "transparent"
                }
                contentItem: Text {
                    color: row.hovered ? "white" : "black"
                    elide: Text.ElideRight
                    font: row.font
                    text: row.textInput
                    textFormat: Text.PlainText
                    verticalAlignment: Text.AlignVCenter
                }
            }
            indicator: Canvas {
                readonly property string fill: portBox.hovered ? "#fafafa"
                                                               : portBox.pressed ? "black" : Theme.highlight

                height: 8
                objectName: "portArrow"
                width: 12
                x: portBox.width - width - portBox.rightPadding
                y: portBox.topPadding + (portBox.availableHeight - height) / 2

                onFillChanged: requestPaint()
                onPaint: {
                    const context = getContext("2d");
                    context.reset();
                    context.moveTo(0, 0);
                    context.lineTo(width, 0);
                    context.lineTo(width / 2, height);
                    context.closePath();
                    context.fillStyle = fill;
                    context.fill();
                }
            }
            popup: Popup {
                font: portBox.font
                implicitHeight: Math.min(160, contentItem.implicitHeight + topPadding + bottomPadding)
                padding: 1
                width: portBox.width
                y: portBox.height - 1

                onVisibleChanged: portBox.updateShownText()

                background: Rectangle {
                    border.color: Theme.highlight
                    color: "transparent"
                    radius: 4
                }
                contentItem: ListView {
                    clip: true
                    currentIndex: portBox.highlightedIndex
                    implicitHeight: contentHeight
                    model: portBox.popup.visible ? portBox.delegateModel : null

                    ScrollIndicator.vertical: ScrollIndicator {
                    }
                }
            }

            Keys.onDownPressed: event => {
                if (popup.visible)
                    event.accepted = false;
                else
                    popup.open();
            }
            Keys.onPressed: event => event.accepted = choosesUnseen(event)
            Keys.onUpPressed: event => {
                if (popup.visible)
                    event.accepted = false;
                else
                    popup.open();
            }
            onAccepted: settings.currentPortNum = settings.portNum
            onDisplayTextChanged: updateShownText()
        }

        FrameExitButton {
            objectName: "exitButton"

            onClicked: settings.exitSettings()
        }
    }
}
