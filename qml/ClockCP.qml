// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Effects

Window {
    id: controlPanel

    property bool boolConn: false
    property bool boolData: false
    property bool boolServ: false
    property string calendarText: ""
    property var givenTime: null // what the clocks show; the present while it is null
    property bool res: false // declared, never read

    signal connectionButton
    signal exitCP // nothing here emits it
    signal openDataFolderButton

    component PanelButton: ShadowedButton {
        anchors.top: parent.top
        anchors.topMargin: 25
        font.pointSize: 11
        height: 100
        width: 150
    }

    // Drawn through its effect.
    component PanelLamp: Lamp {
        anchors.top: parent.top
        anchors.topMargin: 160
        height: 40
        litColor: "#44ea44"
        visible: false
        width: 40
    }

    // Once a lamp has been lit, its effect keeps blur and brightness, intentional: switching it off
    // restores only the colour.
    component LampEffect: MultiEffect {
        id: effect

        required property Lamp lamp
        readonly property ColorAnimation fade: lamp.lit ? lamp.turnOn : lamp.turnOff
        readonly property bool lit: lamp.lit

        function show(on) {
            lamp.show(on);
            if (on) {
                shadowEnabled = true;
                blurEnabled = true;
                brightness = 0.3;
            }
        }

        Accessible.description: lamp.stateText
        Accessible.name: lamp.name
        Accessible.role: Accessible.Indicator
        anchors.fill: lamp
        blur: 0.5
        blurEnabled: false
        blurMax: 30
        brightness: 0
        saturation: 0.2
        shadowBlur: 0.8
        shadowColor: Theme.panel
        shadowEnabled: true
        shadowHorizontalOffset: 1
        shadowVerticalOffset: 1
        source: lamp
    }

    color: Theme.window
    height: 620
    maximumHeight: 620
    maximumWidth: 640
    minimumHeight: 620
    minimumWidth: 640
    title: "Панель управления"
    width: 640

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    Connections {
        function onConnectionLED(res) {
            controlPanel.boolConn = res;
            orkConnectionEffect.show(res);
        }

        function onDataLED(res) {
            controlPanel.boolData = res;
            orkDataEffect.show(res);
        }

        function onServerLED(res) {
            controlPanel.boolServ = res;
            orkServerEffect.show(res);
        }

        target: mainBackEnd
    }

    Item {
        anchors.fill: parent
        focus: true

        Keys.onEscapePressed: controlPanel.close()

        Backdrop {
            anchors.fill: parent

            RedFrame {
                id: frame

                lowerColor: Theme.edgeBottom

                PanelButton {
                    id: serverButton

                    anchors.left: parent.left
                    anchors.leftMargin: 35
                    objectName: "serverButton"
                    text: "Настройки\n подключения\n к прибору"

                    onClicked: controlPanel.connectionButton()
                }

                PanelButton {
                    id: portButton

                    anchors.left: parent.left
                    anchors.leftMargin: 237
                    enabled: false
                    objectName: "portButton"
                    text: "Настройки\n подключения\n к серверу"
                }

                PanelButton {
                    id: dataButton

                    anchors.right: parent.right
                    anchors.rightMargin: 35
                    objectName: "dataButton"
                    text: "Открыть\n архив\n данных"

                    onClicked: controlPanel.openDataFolderButton()
                }

                PanelLamp {
                    id: orkConnectionLED

                    anchors.left: parent.left
                    anchors.leftMargin: 90
                    name: "Связь с прибором"
                    objectName: "orkConnectionLED"
                }

                LampEffect {
                    id: orkConnectionEffect

                    lamp: orkConnectionLED
                    objectName: "orkConnectionEffect"
                }

                PanelLamp {
                    id: orkServerLED

                    anchors.left: parent.left
                    anchors.leftMargin: 295
                    name: "Связь с сервером"
                    objectName: "orkServerLED"
                }

                LampEffect {
                    id: orkServerEffect

                    lamp: orkServerLED
                    objectName: "orkServerEffect"
                }

                PanelLamp {
                    id: orkDataLED

                    anchors.right: parent.right
                    anchors.rightMargin: 90
                    name: "Запись данных"
                    objectName: "orkDataLED"
                }

                LampEffect {
                    id: orkDataEffect

                    lamp: orkDataLED
                    objectName: "orkDataEffect"
                }

                SoftShadow {
                    anchors.fill: calendar
                    blurMax: 10
                    objectName: "calendarShadow"
                    shadowColor: "black"
                    shadowHorizontalOffset: 0
                    shadowVerticalOffset: 0
                    source: calendar
                    strength: 2
                }

                Text {
                    id: calendar

                    Accessible.name: text
                    Accessible.role: Accessible.StaticText
                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: 40
                    anchors.horizontalCenter: parent.horizontalCenter
                    color: "#fafafa"
                    font.bold: false
                    font.capitalization: Font.Capitalize
                    font.family: fontPalantino.font.family
                    font.pixelSize: 30
                    objectName: "calendar"
                    style: Text.Raised
                    styleColor: "black"
                    text: controlPanel.calendarText
                }
            }
        }

        Item {
            height: frame.panel.height
            width: frame.panel.width
            x: frame.panel.x
            y: frame.panel.y

            Loader {
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 100
                anchors.left: parent.left
                anchors.leftMargin: 20
                anchors.right: parent.right
                anchors.rightMargin: 20
                anchors.top: parent.top
                anchors.topMargin: 220
                objectName: "clockArea"
                source: "clocks/clocks.qml"
            }
        }
    }
}
