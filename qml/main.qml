// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtCharts
import Qt.labs.platform as Platform
import Qt5Compat.GraphicalEffects

ApplicationWindow {
    id: window

    property string counterData: " Статус: Прибор остановлен"
    property string firstCloudAlt: "----"
    property string secondCloudAlt: "----"
    // Declared and never read, like i below.
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
    // These can lie behind the main window, and its modal windows do not block them: declared as its
    // children they would get it as transient parent.
    property list<Window> independentWindows

    // Nothing emits it.
    signal exitApp

    function heightFor(screenHeight) {
        return screenHeight < 850 ? 640 : 750;
    }

    // The height is bound until the window has been created, so that it opens with it: a window that
    // shrinks while it is being shown may keep its first height for seconds.
    function fitScreen(screenHeight) {
        minimumHeight = heightFor(screenHeight);
        height = minimumHeight;
    }

    function open(panel) {
        // true rather than show(): Qt 6.4 takes show() back right after the main window has appeared.
        panel.visible = true;
        if (panel.visibility === Window.Minimized) {
            panel.showNormal();
        }
        panel.raise();
        panel.requestActivate();
    }

    // A modal window blocks the one that it was opened from and stays above it.
    function openAbove(panel, opener) {
        if (!panel.visible) {
            panel.transientParent = opener.visible ? opener : window;
        }
        open(panel);
    }

    function windowStart() {
        return mainBackEnd ? mainBackEnd.minTime() : new Date();
    }

    function windowEnd() {
        return mainBackEnd ? mainBackEnd.maxTime() : new Date();
    }

    function setRange(axis) {
        axis.min = windowStart();
        axis.max = windowEnd();
    }

    // A change of width is animated. A slide is not: an animated one redraws all dots for 3 s, so
    // with a reading a second the window would never rest.
    function moveAxis(axis, chart) {
        const animated = isWidened(axis);
        if (!animated) {
            chart.animationOptions = ChartView.NoAnimation;
        }
        setRange(axis);
        chart.animationOptions = ChartView.SeriesAnimations;
    }

    function isWidened(axis) {
        return Math.abs((axis.max.getTime() - axis.min.getTime()) / 1000 - mainBackEnd.xMinRange) > 1;
    }

    // Between two plotted points a slide of less than a pixel cannot be seen, and the dots are left
    // alone while they are still on their way to a new width.
    function isSlideSeen(axis) {
        const pixel = mainBackEnd.xMinRange * 1000 / chartView.plotArea.width;
        return !widening.running && windowEnd().getTime() - axis.max.getTime() >= pixel;
    }

    // The animation of a removal would lead the dots astray, so there is none.
    function thin(chart) {
        chart.animationOptions = ChartView.NoAnimation;
        chart.opacity = 0;
        chart.animationDuration = 0;
        chart.animationDuration = 3000;
        chart.animationOptions = ChartView.SeriesAnimations;
    }

    // Told to remove more points than there are, Qt Charts reads beyond their end.
    function removeOldest(series) {
        series.removePoints(0, Math.min(2000, series.count));
    }

    function heightText(text) {
        return text === "5000" || text === "9999" || text === "8888" || text === "7777" ? "----" : text;
    }

    function showError(text) {
        blink.complete();
        fadeOut.stop();
        blink.start();
        errorText.visible = true;
        errorText.text = text;
    }

    color: "#eeeeee"
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

    footer: Text {
        Accessible.ignored: true
        height: 24

        Row {
            anchors.fill: parent
            anchors.leftMargin: 8
            anchors.rightMargin: 8

            Label {
                id: statusLabel

                objectName: "statusLabel"
                Accessible.name: "Строка состояния: " + text.trim()
                Accessible.role: Accessible.StaticText
                color: "#252525"
                elide: Text.ElideRight
                font.family: fontPalantino.font.family
                height: parent.height
                maximumLineCount: 1
                // The port's messages carry a tab and a carriage return, which are not for the eye.
                text: " " + window.counterData.replace(/[\r\n]+/g, "").replace(/\t/g, " ")
                textFormat: Text.PlainText
                verticalAlignment: Text.AlignVCenter
                width: parent.width
            }
        }
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
        chartView.animationOptions = ChartView.AllAnimations;
        mainBackEnd.lineAxisY = valueAxisSeriesY;
        mainBackEnd.logAxisY = logValueAxisSeriesY;
    }

    component LegendSquare: Rectangle {
        anchors.verticalCenter: parent.verticalCenter
        border.color: "black"
        border.width: 1
        height: 10
        width: 10
    }

    component LegendText: Text {
        anchors.leftMargin: 4
        anchors.verticalCenter: parent.verticalCenter
        font.pixelSize: 14
    }

    component PlateBox: Rectangle {
        id: plateBox

        property alias fontFamily: plateText.font.family
        required property string name
        property alias text: plateText.text

        Accessible.name: name + ": " + text
        Accessible.role: Accessible.StaticText
        border.color: "black"
        border.width: 1
        clip: true
        color: "#eeeeee"
        height: 20
        width: 58
        y: 60

        Text {
            id: plateText

            readonly property int room: plateBox.width - 4

            anchors.centerIn: parent
            elide: Text.ElideRight
            font.pointSize: 12
            objectName: "plateText"
            textFormat: Text.PlainText
            width: Math.min(implicitWidth, room)
        }

        HoverHandler {
            id: plateHover
        }

        FullText {
            font.family: plateBox.fontFamily
            font.pointSize: 12
            hovered: plateHover.hovered
            shortened: plateText.truncated
            text: plateBox.text
        }
    }

    // One layer's dots, laid over the background chart without a frame or scale of its own.
    component LayerChart: ChartView {
        anchors.fill: parent
        animationDuration: 3000
        animationEasingCurve.bezierCurve: [0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.78, 0.93, 0.95, 1, 1]
        animationEasingCurve.type: Easing.BezierSpline
        animationOptions: ChartView.SeriesAnimations
        antialiasing: false
        backgroundColor: "transparent"
        legend.visible: false
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
            if (window.isWidened(axisSX)) {
                widening.restart();
            }
            window.setRange(axiX);
            window.moveAxis(axisFX, chart1_id);
            window.moveAxis(axisSX, chart2_id);
        }

        function onFirstCloudAlt(fCloud) {
            if (window.isSlideSeen(axisFX)) {
                window.setRange(axiX);
                window.moveAxis(axisFX, chart1_id);
            }
            console.log("First layer of cloud altitude: " + fCloud);
            window.firstCloudAlt = window.heightText(fCloud);
        }

        function onSecondCloudAlt(sCloud) {
            if (window.isSlideSeen(axisSX)) {
                window.moveAxis(axisSX, chart2_id);
            }
            console.log("Second layer of cloud altitude: " + sCloud);
            window.secondCloudAlt = window.heightText(sCloud);
        }

        function onNoFlashError() {
            window.showError(window.noFlashStr);
        }

        function onNoDataError() {
            window.showError(window.noDataStr);
        }

        function onNoReadyError() {
            window.showError(window.noReadyStr);
        }

        function onNoError() {
            // Each good reading says it again; a fade that has ended is not played anew.
            if (errorText.opacity > 0) {
                fadeOut.start();
            }
            errorText.visible = false;
        }

        function onChanelLED(cCloud) {
            console.log("Chanel: " + cCloud);
            window.test = cCloud;
            if (chanelID.lit !== cCloud) {
                chanelID.lit = cCloud;
                chanelOff.stop();
                chanelOn.stop();
                (cCloud ? chanelOn : chanelOff).start();
            }
            window.test = !cCloud;
        }

        function onClearGraphData() {
            window.thin(chart1_id);
            window.thin(chart2_id);
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
        // Given earlier, the picture would be set after the icon is shown, and Qt would warn. It is
        // there at once, since the About window has loaded it.
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

    Timer {
        id: widening

        objectName: "widening"
        interval: chart2_id.animationDuration
    }

    SequentialAnimation {
        id: blink

        objectName: "blink"

        NumberAnimation {
            duration: 300
            easing.type: Easing.InOutQuad
            from: 1
            property: "opacity"
            target: errorText
            to: 0
        }

        NumberAnimation {
            duration: 300
            easing.type: Easing.InOutQuad
            from: 0
            property: "opacity"
            target: errorText
            to: 1
        }
    }

    // Not seen, since the banner hides at once; the next blink brings the opacity back.
    NumberAnimation {
        id: fadeOut

        objectName: "fadeOut"
        duration: 3000
        easing.type: Easing.OutQuad
        from: 1
        property: "opacity"
        target: errorText
        to: 0
    }

    ColorAnimation {
        id: chanelOff

        objectName: "chanelOff"
        duration: 500
        property: "color"
        target: chanelID
        to: "#6f6f6f"
    }

    ColorAnimation {
        id: chanelOn

        objectName: "chanelOn"
        duration: 500
        property: "color"
        target: chanelID
        to: "#fa4444"
    }

    // What stays the same between two readings.
    Backdrop {
        anchors.fill: parent

        Rectangle {
            anchors.fill: parent
            color: "#b22222"
            gradient: Gradient {
                GradientStop {
                    color: "#a02222"
                    position: 0.0
                }
                GradientStop {
                    color: "#e82222"
                    position: 1.0
                }
            }
        }

        SoftShadow {
            anchors.fill: titleStrip
            source: titleStrip
        }

        Rectangle {
            id: titleStrip

            objectName: "titleStrip"
            anchors.left: parent.left
            anchors.margins: 8
            anchors.right: parent.right
            anchors.top: parent.top
            color: "#eeeeee"
            height: 40
            radius: 4
        }

        SoftShadow {
            id: titleShadow

            objectName: "titleShadow"
            anchors.fill: titleText
            shadowBlur: 0.1
            source: titleText
        }

        Text {
            id: titleText

            objectName: "titleText"
            anchors.centerIn: titleStrip
            font.family: fontPalantino.font.family
            font.pointSize: 20
            text: "Измеритель высоты облаков ОРК-2"
        }

        NumberAnimation {
            duration: 5000
            from: 0
            properties: "opacity"
            running: window.visible
            targets: [titleText, titleShadow]
            to: 1
        }

        SoftShadow {
            id: panelShadow

            anchors.fill: panelFace
            source: panelFace
            visible: false
        }

        OuterEdge {
            anchors.fill: panelFace
            effect: panelShadow
        }

        Rectangle {
            id: panelFace

            anchors.fill: panel
            color: "#eeeeee"
            radius: 4
        }

        Item {
            id: panel

            objectName: "panel"
            anchors.bottom: parent.bottom
            anchors.bottomMargin: 8
            anchors.left: parent.left
            anchors.leftMargin: 8
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.top: titleStrip.bottom
            anchors.topMargin: 6

            SoftShadow {
                anchors.fill: chanelID
                source: chanelID
            }

            Rectangle {
                id: chanelID

                property bool lit: false

                objectName: "chanelID"
                Accessible.description: lit ? "горит" : "не горит"
                Accessible.name: "Резервный канал"
                Accessible.role: Accessible.Indicator
                anchors.horizontalCenter: parent.horizontalCenter
                anchors.top: parent.top
                anchors.topMargin: 60
                border.color: "#4f4f4f"
                border.width: 1
                color: "#6f6f6f"
                height: 20
                radius: 10
                width: 20
            }

            Text {
                objectName: "chanelCaption"
                anchors.horizontalCenter: chanelID.horizontalCenter
                anchors.top: chanelID.top
                anchors.topMargin: 20
                font.family: fontPalantino.font.family
                font.pointSize: 12
                text: "Резерв"
            }

            Rectangle {
                id: chartFrame

                anchors.fill: chartArea
                anchors.margins: 9
                radius: 5
                visible: false
            }

            Glow {
                id: chartGlow

                anchors.fill: chartFrame
                color: "#cccccc"
                radius: 15
                samples: 15
                source: chartFrame
                spread: 0.25
                transparentBorder: true
                visible: false
            }

            OuterEdge {
                anchors.fill: chartFrame
                effect: chartGlow
            }

            Item {
                id: chartArea

                // The background chart's plot area as the layers see it, so that the dots stand on the
                // drawn scale. Qt Charts draws a dot a pixel higher than a line, and evenly only at a half.
                readonly property rect plotOnLayer: Qt.rect(chartView.plotArea.x - layerCharts.x,
                                                            belowPixel(chartView.plotArea.y) - layerCharts.y,
                                                            chartView.plotArea.width,
                                                            chartView.plotArea.height)

                function belowPixel(y) {
                    const scale = Screen.devicePixelRatio;
                    return (Math.floor(y * scale) + 1.5) / scale;
                }

                anchors.bottom: startButton.top
                anchors.bottomMargin: 55
                anchors.left: parent.left
                anchors.leftMargin: 20
                anchors.right: parent.right
                anchors.rightMargin: 20
                anchors.top: parent.top
                anchors.topMargin: firstLcd.y + firstLcd.height + 15

                ChartView {
                    id: chartView

                    readonly property int lowestMargin: 40
                    readonly property real pixelRatio: Screen.devicePixelRatio

                    // The five lines of the grid are equally thick where whole pixels lie between them.
                    function fitGrid() {
                        const highest = Math.round(plotArea.height) + margins.bottom - lowestMargin;
                        margins.bottom = lowestMargin + highest % gridStep();
                    }

                    function gridStep() {
                        for (let quarter = 1; quarter <= 10; ++quarter) {
                            const pixels = quarter * pixelRatio;
                            if (Math.abs(pixels - Math.round(pixels)) < 0.001) {
                                return 4 * quarter;
                            }
                        }
                        return 4;
                    }

                    objectName: "chartView"
                    anchors.fill: parent
                    animationDuration: 3000
                    antialiasing: false
                    backgroundColor: "#eeeeee"
                    backgroundRoundness: 5
                    dropShadowEnabled: true
                    legend.font.family: fontPalantino.font.family
                    legend.font.pixelSize: 14
                    legend.opacity: 0
                    margins.bottom: lowestMargin
                    margins.right: 26

                    onPixelRatioChanged: fitGrid()
                    onPlotAreaChanged: fitGrid()

                    CategoryAxis {
                        id: barCategoriesAxis

                        objectName: "barCategoriesAxis"
                        titleText: "Date"
                        visible: false
                    }

                    ValueAxis {
                        id: valueAxisX

                        objectName: "valueAxisX"
                        max: uiData ? uiData.xmax : 0
                        min: uiData ? uiData.xmin : 0
                        visible: false
                    }

                    DateTimeAxis {
                        id: axiX

                        objectName: "axiX"
                        format: "hh:mm:ss"
                        labelsAngle: -45
                        max: window.windowEnd()
                        min: window.windowStart()
                        tickCount: 9
                        visible: false
                    }

                    ValueAxis {
                        id: valueAxisY

                        objectName: "valueAxisY"
                        gridLineColor: "#cccccc"
                        labelsAngle: 0
                        labelsFont.family: fontPalantino.font.family
                        labelsFont.pixelSize: 14
                        max: 3000
                        min: 0
                        titleFont.family: fontPalantino.font.family
                        titleFont.pixelSize: 14
                        titleText: "Высота (м)"
                    }

                    LogValueAxis {
                        id: logValueAxisY

                        objectName: "logValueAxisY"
                        max: 4000
                        min: 0
                        minorTickCount: 0
                        titleText: "Высота (м)"
                        visible: false
                    }

                    ScatterSeries {
                        id: tempSeries

                        objectName: "tempSeries"
                        axisX: axiX
                        axisY: logValueAxisY
                        name: ""
                        visible: false
                    }

                    ScatterSeries {
                        id: tempSeries2

                        objectName: "tempSeries2"
                        axisX: axiX
                        axisY: valueAxisY
                        name: ""
                        visible: false
                    }
                }

                Text {
                    id: chartName

                    objectName: "chartName"
                    anchors.horizontalCenter: parent.horizontalCenter
                    anchors.top: parent.top
                    anchors.topMargin: 15
                    font.family: fontPalantino.font.family
                    font.pixelSize: 18
                    text: window.cName
                }

                Rectangle {
                    objectName: "chartLegend"
                    anchors.horizontalCenter: chartName.horizontalCenter
                    anchors.top: chartName.bottom
                    anchors.topMargin: 3
                    color: "#eeeeee"
                    height: 20
                    width: 350

                    LegendSquare {
                        id: firstSquare

                        objectName: "firstSquare"
                        anchors.right: parent.horizontalCenter
                        anchors.rightMargin: 110
                        color: "#209FDF"
                    }

                    LegendText {
                        objectName: "firstLegend"
                        anchors.left: firstSquare.right
                        font.family: fontPalantino.font.family
                        text: "Первый слой"
                    }

                    LegendSquare {
                        id: secondSquare

                        objectName: "secondSquare"
                        anchors.left: parent.horizontalCenter
                        anchors.leftMargin: 20
                        color: "#9DCC5B"
                    }

                    LegendText {
                        objectName: "secondLegend"
                        anchors.left: secondSquare.right
                        font.family: fontPalantino.font.family
                        text: "Второй слой"
                    }
                }

                Item {
                    id: layerCharts

                    anchors.bottom: parent.bottom
                    anchors.bottomMargin: 51
                    anchors.left: parent.left
                    anchors.leftMargin: 68
                    anchors.right: parent.right
                    anchors.rightMargin: 25
                    anchors.top: chartName.bottom
                    anchors.topMargin: 18

                    LayerChart {
                        id: chart1_id

                        objectName: "chart1_id"
                        plotArea: chartArea.plotOnLayer
                        onOpacityChanged: {
                            if (opacity === 0) {
                                window.removeOldest(fLayerCloudSeries);
                            }
                            opacity = 1;
                        }

                        ValueAxis {
                            id: seriesX

                            objectName: "seriesX"
                            gridVisible: false
                            labelsVisible: false
                            max: uiData ? uiData.xmax : 0
                            min: uiData ? uiData.xmin : 0
                            visible: false
                        }

                        DateTimeAxis {
                            id: axisFX

                            objectName: "axisFX"
                            format: "hh:mm:ss"
                            gridVisible: false
                            labelsAngle: -45
                            labelsVisible: false
                            max: window.windowEnd()
                            min: window.windowStart()
                            tickCount: 9
                            visible: false
                        }

                        LogValueAxis {
                            id: logValueAxisSeriesY

                            objectName: "logValueAxisSeriesY"
                            gridVisible: false
                            labelsVisible: false
                            max: 3000
                            min: 0
                            visible: false
                        }

                        ValueAxis {
                            id: valueAxisSeriesY

                            objectName: "valueAxisSeriesY"
                            gridVisible: false
                            labelsVisible: false
                            max: 3000
                            min: 0
                            visible: false
                        }

                        ScatterSeries {
                            id: fLayerCloudSeries

                            objectName: "fLayerCloudSeries"
                            axisX: axisFX
                            axisY: valueAxisSeriesY
                            borderColor: "#209FDF"
                            borderWidth: 2
                            color: "#209FDF"
                            markerSize: 3
                            // The same name as the second layer's; no legend shows it.
                            name: "Второй слой"
                            opacity: 1
                        }
                    }

                    LayerChart {
                        id: chart2_id

                        objectName: "chart2_id"
                        plotArea: chartArea.plotOnLayer
                        onOpacityChanged: {
                            if (opacity === 0) {
                                window.removeOldest(sLayerCloudSeries);
                            }
                            opacity = 1;
                        }

                        ValueAxis {
                            id: seriesX2

                            objectName: "seriesX2"
                            gridVisible: false
                            labelsVisible: false
                            max: uiData ? uiData.xmax : 0
                            min: uiData ? uiData.xmin : 0
                            visible: false
                        }

                        DateTimeAxis {
                            id: axisSX

                            objectName: "axisSX"
                            format: "hh:mm:ss"
                            gridVisible: false
                            labelsAngle: -45
                            labelsVisible: false
                            max: window.windowEnd()
                            min: window.windowStart()
                            tickCount: 9
                            visible: false
                        }

                        LogValueAxis {
                            id: logValueAxisSeriesY2

                            objectName: "logValueAxisSeriesY2"
                            gridVisible: false
                            labelsVisible: false
                            max: 3000
                            min: 0
                            visible: false
                        }

                        ValueAxis {
                            id: valueAxisSeriesY2

                            objectName: "valueAxisSeriesY2"
                            gridVisible: false
                            labelsVisible: false
                            max: 3000
                            min: 0
                            visible: false
                        }

                        ScatterSeries {
                            id: sLayerCloudSeries

                            objectName: "sLayerCloudSeries"
                            axisX: axisSX
                            axisY: valueAxisSeriesY2
                            borderColor: "#9DCC5B"
                            borderWidth: 2
                            color: "#9DCC5B"
                            markerSize: 3
                            name: "Второй слой"
                            opacity: 0.95
                        }
                    }
                }

                DotGlow {
                    anchors.fill: layerCharts
                    source: layerCharts
                }

                MouseArea {
                    objectName: "rangeArea"
                    Accessible.description: "Двойной щелчок меняет промежуток времени"
                    Accessible.name: chartName.text
                    Accessible.role: Accessible.Chart
                    anchors.fill: layerCharts
                    onDoubleClicked: {
                        console.log("doubleClicked , doubleClicked , doubleClicked ！");
                        mainBackEnd.changeRangeX();
                        chartName.text = mainBackEnd.chartName;
                    }
                }

                Text {
                    id: lnTopAltText

                    objectName: "lnTopAltText"
                    anchors.left: parent.left
                    anchors.leftMargin: 55
                    anchors.top: parent.top
                    anchors.topMargin: 84
                    font.family: fontPalantino.font.family
                    font.pointSize: 9
                    text: "3000.0"
                    visible: window.lnYaxis
                }
            }

            Switch {
                id: lineLogScale

                objectName: "lineLogScale"
                Accessible.name: "Логарифмическая шкала высоты"
                anchors.left: chartArea.left
                anchors.leftMargin: 25
                anchors.top: chartArea.bottom
                checked: false
                // The user cannot operate it: the chart always has the linear scale.
                enabled: false
                font.family: fontPalantino.font.family
                text: "lg(H)"
            }

            SoftShadow {
                anchors.fill: buttonCP
                source: buttonCP.background
            }

            MyButton {
                id: buttonCP

                objectName: "buttonCP"
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 25
                anchors.left: parent.left
                anchors.leftMargin: 35
                text: "Панель управления"
                width: 150
                onClicked: window.open(controlPanel)
            }

            SoftShadow {
                anchors.fill: startButton
                source: startButton.background
            }

            MyButton {
                id: startButton

                objectName: "startButton"
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 25
                anchors.right: parent.right
                anchors.rightMargin: 35
                checkable: true
                text: checked ? "Стоп" : "Запуск"
                onCheckedChanged: {
                    if (checked) {
                        mainBackEnd.enButton();
                    } else {
                        mainBackEnd.disableButton();
                    }
                    fLayerCloudSeries.visible = checked;
                    sLayerCloudSeries.visible = checked;
                    axiX.visibleChanged(axiX.visible);
                    chartView.animationOptions = ChartView.SeriesAnimations;
                }
            }

            Item {
                id: numRectangle

                objectName: "numRectangle"
                Accessible.name: "Номер прибора: " + window.unitNum + ", год выпуска: " + window.unitYr
                Accessible.role: Accessible.StaticText
                anchors.bottom: parent.bottom
                anchors.bottomMargin: 10
                anchors.horizontalCenter: parent.horizontalCenter
                height: 90
                width: 190

                SoftShadow {
                    anchors.fill: plate
                    shadowBlur: 0.2
                    source: plate
                }

                Image {
                    id: plate

                    anchors.fill: parent
                    fillMode: Image.Stretch
                    source: "qrc:/img/num.png"
                }

                PlateBox {
                    objectName: "numberBox"
                    fontFamily: fontPalantino.font.family
                    name: "Номер прибора"
                    text: window.unitNum
                    x: 14
                }

                PlateBox {
                    objectName: "yearBox"
                    fontFamily: fontPalantino.font.family
                    name: "Год выпуска"
                    text: window.unitYr
                    x: 112
                }
            }
        }
    }

    // What moves with each reading or blinks.
    Item {
        height: panel.height
        width: panel.width
        x: panel.x
        y: panel.y

        MyLcdNumber {
            id: firstLcd

            objectName: "firstLcd"
            anchors.left: parent.left
            anchors.leftMargin: 140
            anchors.top: parent.top
            anchors.topMargin: 45
            itemColor: titleStrip.color.toString()
            lcdData: window.firstCloudAlt
            lcdText: "Первый слой облаков (м)"
        }

        MyLcdNumber {
            id: secondLcd

            objectName: "secondLcd"
            anchors.right: parent.right
            anchors.rightMargin: 140
            anchors.top: parent.top
            anchors.topMargin: 45
            itemColor: titleStrip.color.toString()
            lcdData: window.secondCloudAlt
            lcdText: "Второй слой облаков (м)"
        }

        Text {
            id: errorText

            objectName: "errorText"
            Accessible.name: text
            Accessible.role: Accessible.AlertMessage
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: parent.top
            anchors.topMargin: chartArea.y + 165
            color: "#a02222"
            font.family: fontPalantino.font.family
            font.pixelSize: 48
            visible: false
        }
    }
}
