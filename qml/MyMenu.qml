// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic

MenuBar {
    id: menuBar

    signal buttonAbout
    signal buttonExit
    signal buttonNumber
    signal buttonOpenFolder
    signal buttonSettings

    component Entry: MenuItem {
        id: entry

        property int backgroundWidth: 200
        property int boxRadius: 3
        property int boxSize: 26
        property int markSize: 14
        property int sideWidth: 30
        property int arrowWidth: 30

        implicitHeight: 22
        implicitWidth: 200
        padding: 0

        // No entry has a submenu or is checkable, so arrow and indicator are never visible.
        arrow: Canvas {
            implicitHeight: 22
            implicitWidth: entry.arrowWidth
            visible: entry.subMenu
            x: entry.width - width

            onPaint: {
                const context = getContext("2d");
                context.reset();
                context.fillStyle = entry.highlighted ? "#ffffff" : "#21be2b";
                context.moveTo(5, 5);
                context.lineTo(width - 5, height / 2);
                context.lineTo(5, height - 5);
                context.closePath();
                context.fill();
            }
        }
        background: Rectangle {
            color: entry.highlighted ? Theme.highlight : "transparent"
            implicitHeight: 22
            implicitWidth: entry.backgroundWidth
            radius: 2
            width: entry.backgroundWidth
        }
        contentItem: Text {
            color: entry.highlighted ? "#ffffff" : Theme.text
            elide: Text.ElideRight
            font: entry.font
            horizontalAlignment: Text.AlignLeft
            leftPadding: entry.indicator.width
            opacity: entry.enabled ? 1.0 : 0.3
            rightPadding: entry.arrow.width
            text: entry.text
            verticalAlignment: Text.AlignVCenter
        }
        indicator: Item {
            implicitHeight: 22
            implicitWidth: entry.sideWidth

            Rectangle {
                anchors.centerIn: parent
                border.color: "#21be2b"
                height: entry.boxSize
                radius: entry.boxRadius
                visible: entry.checkable
                width: entry.boxSize

                Rectangle {
                    anchors.centerIn: parent
                    color: "#21be2b"
                    height: entry.markSize
                    radius: entry.boxRadius
                    visible: entry.checked
                    width: entry.markSize
                }
            }
        }
    }

    component FileEntry: Entry {
        arrowWidth: 15
        backgroundWidth: 220
        boxRadius: 4
        boxSize: 16
        markSize: 8
        sideWidth: 22
    }

    component MenuBackground: Rectangle {
        border.color: "#cccccc"
        border.width: 1
        color: Theme.panel
        implicitHeight: 22
        implicitWidth: 200
        radius: 3
    }

    background: Rectangle {
        gradient: Gradient {
            GradientStop {
                color: "#dddddd"
                position: 0.0
            }
            GradientStop {
                color: "#c8c8c8"
                position: 1.0
            }
        }
    }
    font.family: fontPalantino.font.family

    delegate: MenuBarItem {
        id: barItem

        property bool closedAtPress: true

        // After Escape, Qt's menu bar still considers the menu of the item under the pointer open, and
        // the next trigger only closes it again.
        function openIfStillClosed() {
            if (!menu.visible)
                triggered();
        }

        function openMenu() {
            triggered();
            openIfStillClosed();
        }

        Keys.onDownPressed: openMenu()
        Keys.onEnterPressed: openMenu()
        Keys.onReturnPressed: openMenu()
        focusPolicy: Qt.StrongFocus
        implicitHeight: 22

        // Deferred, since the menu bar handles the click after this handler.
        onClicked: {
            if (closedAtPress)
                Qt.callLater(openIfStillClosed); // qmllint disable
        }
        onPressed: closedAtPress = !menu.visible

        background: Rectangle {
            border.color: Theme.highlight
            border.width: barItem.visualFocus ? 1 : 0
            color: barItem.highlighted ? Theme.highlight : "transparent"
            implicitHeight: 20
            implicitWidth: 20
            radius: 3
        }
        contentItem: Text {
            color: barItem.highlighted ? "#ffffff" : Theme.text
            elide: Text.ElideRight
            font: barItem.font
            horizontalAlignment: Text.AlignLeft
            opacity: barItem.enabled ? 1.0 : 0.3
            text: barItem.text
            verticalAlignment: Text.AlignVCenter
        }
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    Menu {
        bottomPadding: 1
        font.family: fontPalantino.font.family
        objectName: "fileMenu"
        title: "Файл"
        topPadding: 1

        background: MenuBackground {
            height: 49
            implicitWidth: 220
        }

        FileEntry {
            text: "Открыть папку с данными"

            onTriggered: menuBar.buttonOpenFolder()
        }

        MenuSeparator {
            padding: 0
            verticalPadding: 1

            contentItem: Rectangle {
                color: "#1E000000"
                implicitHeight: 1
                implicitWidth: 200
            }
        }

        FileEntry {
            text: "Выход"

            onTriggered: menuBar.buttonExit()
        }
    }

    Menu {
        bottomPadding: 1
        font.family: fontPalantino.font.family
        objectName: "toolsMenu"
        title: "Инструменты"
        topPadding: 1

        background: MenuBackground {
            height: 46
        }

        Entry {
            text: "Параметры"

            onTriggered: menuBar.buttonSettings()
        }

        Entry {
            text: "Номер прибора"

            onTriggered: menuBar.buttonNumber()
        }
    }

    Menu {
        bottomPadding: 1
        font.family: fontPalantino.font.family
        objectName: "helpMenu"
        title: "Справка"
        topPadding: 1

        background: MenuBackground {
            height: 24
        }

        Entry {
            text: "О нас"

            onTriggered: menuBar.buttonAbout()
        }
    }
}
