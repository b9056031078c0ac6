// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import Qt.labs.platform as Platform

ApplicationWindow {
    id: window

    property string counterData: " Статус: Прибор остановлен"
    property string firstCloudAlt: "----"
    property string secondCloudAlt: "----"
    // Declared, never read, like i below.
    property string chanelLED: "#3f3f3f"
    property string unitNum: ""
    property string unitYr: ""
    property string cName: "Высота нижней границы облачности (10 минут)"
    property string noFlashStr: "Нет вспышки лампы!!!"
    property string noDataStr: "Ошибка данных!"
    property string noReadyStr: "Нет готовности данных"
    property bool test: false
    property bool lnYaxis: false
    property int i: 0
    readonly property var fLayerCloudSeries: heightChart.firstLayer.dots
    readonly property var sLayerCloudSeries: heightChart.secondLayer.dots
    // May be stacked below the main window and are not blocked by its modal windows. As children of
    // the main window they would have it as transient parent.
    property list<Window> independentWindows

    // Declared, never emitted.
    signal exitApp

    function heightFor(screenHeight) {
        return screenHeight < 850 ? 640 : 750;
    }

    // The height is bound until the window has been created: a window that shrinks while it is being
    // shown may keep its first height for seconds.
    function fitScreen(screenHeight) {
        minimumHeight = heightFor(screenHeight);
        height = minimumHeight;
    }

    function open(panel) {
        // Not show(): Qt 6.4 undoes it right after the main window has appeared.
        panel.visible = true;
        if (panel.visibility === Window.Minimized)
            panel.showNormal();
        panel.raise();
        panel.requestActivate();
    }

    // A modal window blocks the window from which it was opened and stays above it.
    function openAbove(panel, opener) {
        if (!panel.visible)
            panel.transientParent = opener.visible ? opener : window;
        open(panel);
    }

    function heightText(text) {
        return text === "5000" || text === "9999" || text === "8888" || text === "7777" ? "----" : text;
    }

    color: Theme.panel
    height: heightFor(Screen.height)
    maximumHeight: 750
    maximumWidth: 900
    minimumHeight: heightFor(Screen.height)
    minimumWidth: 900
    title: "Измеритель высоты облаков ОРК-2"
    visible: true
    width: 900

    independentWindows: [
        About {
            id: aboutWindow

            objectName: "aboutWindow"
            title: "О нас..."
            transientParent: null
            onExitAbout: close()
        },

        ClockCP {
            id: controlPanel

            objectName: "controlPanel"
            title: "Панель управления"
            transientParent: null
            onConnectionButton: window.openAbove(sWindow, controlPanel)
            onExitCP: close()
            onOpenDataFolderButton: mainBackEnd.on_action_openDataFolder_triggered()
        }
    ]

    footer: StatusLine {
        status: window.counterData
    }
    header: MyMenu {
        anchors.right: window.contentItem.right
        anchors.rightMargin: 0
        width: window.contentItem.width
        onButtonAbout: window.open(aboutWindow)
        onButtonExit: window.close()
        onButtonNumber: window.openAbove(numberWindow, window)
        onButtonOpenFolder: mainBackEnd.on_action_openDataFolder_triggered()
        onButtonSettings: window.openAbove(sWindow, window)
    }

    Component.onCompleted: {
        fitScreen(Screen.height);
        uiData.xy = fLayerCloudSeries;
        uiData2.xy = sLayerCloudSeries;
        mainBackEnd.showUnitYearNumber();
        mainBackEnd.updateComPortNumber();
        cName = mainBackEnd.chartName;
        heightChart.animateAppearance();
        mainBackEnd.lineAxisY = heightChart.firstLayer.linearAxis;
        mainBackEnd.logAxisY = heightChart.firstLayer.logAxis;
    }

    FontLoader {
        id: fontGost

        source: "qrc:/settings/Fonts/GOST/GOST_B.TTF"
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }

    Connections {
        function onSendSettingsToQml(data) {
            console.log("Received in QML from settings C++: " + data);
            sWindow.dataFile = data;
        }

        function onSendComPortSettingsToQml(cPort) {
            console.log("Received ComPort in QML from settings C++: " + cPort);
            sWindow.dataCpp = cPort;
        }

        target: settings
    }

    Connections {
        function onSendCounter(countData) {
            console.log(countData);
            window.counterData = countData;
        }

        function onUpdateVoidGraph() {
            heightChart.moveToNow();
        }

        function onFirstCloudAlt(fCloud) {
            heightChart.slideFirstLayer();
            console.log("First layer of cloud altitude: " + fCloud);
            window.firstCloudAlt = window.heightText(fCloud);
        }

        function onSecondCloudAlt(sCloud) {
            heightChart.slideSecondLayer();
            console.log("Second layer of cloud altitude: " + sCloud);
            window.secondCloudAlt = window.heightText(sCloud);
        }

        function onNoFlashError() {
            errorText.show(window.noFlashStr);
        }

        function onNoDataError() {
            errorText.show(window.noDataStr);
        }

        function onNoReadyError() {
            errorText.show(window.noReadyStr);
        }

        function onNoError() {
            errorText.hide();
        }

        function onChanelLED(cCloud) {
            console.log("Chanel: " + cCloud);
            window.test = cCloud;
            chanelID.show(window.test);
            window.test = !cCloud;
        }

        function onClearGraphData() {
            heightChart.thin();
        }

        function onSendUnitYearNumber(unitNumber, unitYear) {
            console.log("ORK-2 N" + unitNumber);
            console.log("ORK-2 Y" + unitYear);
            window.unitNum = unitNumber;
            window.unitYr = unitYear;
        }

        function onOpenControlPanel() {
            window.open(controlPanel);
        }

        function onSendActualPortNumber(cPort) {
            console.log("ComPort in QML from settings C++: " + cPort);
            sWindow.currentPortNum = cPort;
        }

        target: mainBackEnd
    }

    Settings {
        id: sWindow

        objectName: "sWindow"
        title: "Параметры"
        onExitSettings: {
            mainBackEnd.saveComPortNumber(portNum);
            close();
        }
        onReadFile: settings.receiveSignalFromQml()
        onSetComNum: console.log("ComPort number in Main: " + portNum)
    }

    Number {
        id: numberWindow

        objectName: "numberWindow"
        title: "Номер прибора"
        uNumber: window.unitNum
        uYear: window.unitYr
        onExitNumber: {
            console.log("Unit number: " + uNumber);
            console.log("Unit year:" + uYear);
            mainBackEnd.saveUnitYearNumber(uNumber, uYear);
            close();
        }
    }

    SqlSettings {
        id: sqlSettingsWnd

        objectName: "sqlSettingsWnd"
        title: "Параметры SQL сервера"
        onExitSqlSettings: close()
    }

    Platform.SystemTrayIcon {
        id: trayIcon

        objectName: "trayIcon"
        tooltip: window.title
        visible: false
        menu: Platform.Menu {
            Platform.MenuItem {
                text: "Выход"
                onTriggered: Qt.quit()
            }
        }
        // With an icon.source binding, Qt would show the icon before its picture is set, and warn.
        Component.onCompleted: {
            icon.source = "qrc:/img/logoKAS.png";
            visible = true;
        }
        onActivated: {
            window.show();
            window.raise();
            window.requestActivate();
        }
    }

    // Content that does not change between two readings.
    Backdrop {
        anchors.fill: parent

        RedBackground {
        }

        TitleStrip {
            id: titleStrip

            anchors.left: parent.left
            anchors.margins: 8
            anchors.right: parent.right
            anchors.top: parent.top
            text: window.title
        }

        RaisedPanel {
            id: panel

            anchors.bottom: parent.bottom
            anchors.left: parent.left
            anchors.margins: 8
            anchors.right: parent.right
            anchors.top: titleStrip.bottom
            anchors.topMargin: 6
            objectName: "panel"

            SoftShadow {
                anchors.fill: chanelID
                source: chanelID
            }

            Lamp {
                id: chanelID

                anchors.horizontalCenter: parent.horizontalCenter
                anchors.top: parent.top
                anchors.topMargin: 60
                height: 20
                litColor: "#fa4444"
                name: "Резервный канал"
                objectName: "chanelID"
                turnOff.objectName: "chanelOff"
                turnOn.objectName: "chanelOn"
                width: 20
            }

            Text {
                anchors.horizontalCenter: chanelID.horizontalCenter
                anchors.top: chanelID.top
                anchors.topMargin: 20
                font.family: fontPalantino.font.family
                font.pointSize: 12
                objectName: "chanelCaption"
                text: "Резерв"
            }

            MyLcdNumber {
                id: firstLcd

                anchors.left: parent.left
                anchors.leftMargin: 140
                anchors.top: parent.top
                anchors.topMargin: 45
                foreground: overBackdrop
                itemColor: titleStrip.color.toString()
                lcdData: window.firstCloudAlt
                lcdText: "Первый слой облаков (м)"
                objectName: "firstLcd"
            }

            MyLcdNumber {
                id: secondLcd

                anchors.right: parent.right
                anchors.rightMargin: 140
                anchors.top: parent.top
                anchors.topMargin: 45
                foreground: overBackdrop
                itemColor: titleStrip.color.toString()
                lcdData: window.secondCloudAlt
                lcdText: "Второй слой облаков (м)"
                objectName: "secondLcd"
            }

            HeightChart {
                id: heightChart

                anchors.bottom: startButton.top
                anchors.bottomMargin: 55
                anchors.left: parent.left
                anchors.leftMargin: 20
                anchors.right: parent.right
                anchors.rightMargin: 20
                anchors.top: parent.top
                anchors.topMargin: firstLcd.y + firstLcd.height + 15
                foreground: overBackdrop
                logarithmic: window.lnYaxis
                title: window.cName
            }

            Switch {
                id: lineLogScale

                Accessible.name: "Логарифмическая шкала высоты"
                anchors.left: heightChart.left
                anchors.leftMargin: 25
                anchors.top: heightChart.bottom
                checked: false
                objectName: "lineLogScale"
                // The user cannot operate it: the chart always has the linear scale.
                enabled: false
                font.family: fontPalantino.font.family
                text: "lg(H)"
            }

            ShadowedButton {
                id: buttonCP

                anchors.bottom: parent.bottom
                anchors.bottomMargin: 25
                anchors.left: parent.left
                anchors.leftMargin: 35
                objectName: "buttonCP"
                text: "Панель управления"
                width: 150
                onClicked: window.open(controlPanel)
            }

            ShadowedButton {
                id: startButton

                anchors.bottom: parent.bottom
                anchors.bottomMargin: 25
                anchors.right: parent.right
                anchors.rightMargin: 35
                checkable: true
                objectName: "startButton"
                text: checked ? "Стоп" : "Запуск"
                onCheckedChanged: {
                    if (checked)
                        mainBackEnd.enButton();
                    else
                        mainBackEnd.disableButton();
                    heightChart.showLayers(checked);
                }
            }

            NumberPlate {
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 10
                anchors.horizontalCenter: parent.horizontalCenter
                objectName: "numRectangle"
                unitNumber: window.unitNum
                unitYear: window.unitYr
            }
        }
    }

    // Content that changes with each reading or blinks.
    Item {
        id: overBackdrop

        height: panel.height
        width: panel.width
        x: panel.x
        y: panel.y

        ErrorBanner {
            id: errorText

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            anchors.topMargin: heightChart.y + 165
            z: 1 // above the dots
        }
    }
}
