// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Effects

Window {
    id: about

    signal exitAbout

    component ContactText: Text {
        anchors.horizontalCenter: parent.horizontalCenter
        color: "black"
        font.bold: true
        font.pixelSize: 16
    }

    component Link: ContactText {
        id: link

        property string url

        function open() {
            Qt.openUrlExternally(url);
        }

        Accessible.name: text
        Accessible.role: Accessible.Link
        activeFocusOnTab: true
        color: "#0645ad"
        font.underline: activeFocus || hover.hovered

        Accessible.onPressAction: open()
        Keys.onEnterPressed: open()
        Keys.onReturnPressed: open()
        Keys.onSpacePressed: open()

        HoverHandler {
            id: hover

            cursorShape: Qt.PointingHandCursor
            objectName: "pointer"
        }

        TapHandler {
            onTapped: link.open()
        }
    }

    color: Theme.edge
    height: 320
    maximumHeight: 320
    maximumWidth: 480
    minimumHeight: 320
    minimumWidth: 480
    title: "О нас..."
    width: 480

    FontLoader {
        source: "qrc:/settings/Fonts/DS-Digital/DS-DIGI.TTF"
    }

    FontLoader {
        source: "qrc:/settings/Fonts/GOST/GOST_B.TTF"
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    RedFrame {
        focus: true

        Keys.onEscapePressed: about.close()

        Image {
            id: logo

            Accessible.name: "Эмблема"
            Accessible.role: Accessible.Graphic
            height: 150
            objectName: "logo"
            source: "img/logoKAS.png"
            // Scaled down when it is loaded: drawn from all its 640 x 640 pixels, its edges are jagged.
            sourceSize: Qt.size(width * Screen.devicePixelRatio, height * Screen.devicePixelRatio)
            width: 150
            x: 40
            y: 20
        }

        MultiEffect {
            readonly property alias fade: fade

            anchors.fill: logo
            objectName: "logoShadow"
            shadowBlur: 0.1
            shadowColor: Theme.panel
            shadowEnabled: true
            shadowHorizontalOffset: 1
            shadowVerticalOffset: 1
            source: logo

            NumberAnimation on opacity {
                id: fade

                duration: 5000
                from: 0
                to: 1
            }
        }

        Text {
            id: title

            anchors.right: parent.right
            anchors.rightMargin: 50
            anchors.top: parent.top
            anchors.topMargin: 65
            color: "black"
            font.bold: true
            font.family: fontPalantino.font.family
            font.pixelSize: 22
            horizontalAlignment: Text.AlignHCenter
            objectName: "title"
            text: "Терминал ОРК-2\n(Версия %1)\n".arg(Qt.application.version)
        }

        Column {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: logo.bottom
            anchors.topMargin: 2
            objectName: "contacts"
            width: parent.width

            ContactText {
                font.family: fontPalantino.font.family
                font.pixelSize: 20
                text: "Помощь: дежурный инженер станции"
            }

            Link {
                font.family: fontPalantino.font.family
                objectName: "webLink"
                text: "example.org"
                url: "https://example.org"
            }

            Link {
                font.family: fontPalantino.font.family
                objectName: "mailLink"
                text: "ork2@example.org"
                url: "mailto:ork2@example.org"
            }

            ContactText {
                font.family: fontPalantino.font.family
                objectName: "closingLine"
                text: "2026 г., разработчики терминала ОРК-2"
            }
        }

        FrameExitButton {
            objectName: "exitButton"

            onClicked: about.exitAbout()
        }
    }
}
