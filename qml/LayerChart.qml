// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtCharts

// The points and axes of one layer. Not shown itself: CloudDots draws its dots.
ChartView {
    id: layer

    property alias dotOpacity: dots.opacity
    required property color layerColor
    // Parts of the names of the layer's objects: "F" and "", or "S" and "2".
    required property string letter
    required property string number
    readonly property alias linearAxis: linearAxis
    readonly property alias logAxis: logAxis
    readonly property alias dots: dots
    readonly property alias timeAxis: timeAxis
    // Share of the width that one millisecond takes. As on the time axis, but a change is animated.
    property real timeScale: mainBackEnd ? 1 / (1000 * mainBackEnd.xMinRange) : 0

    // Removes the oldest points: an opacity of 0 triggers it.
    function thin() {
        opacity = 0;
        animationDuration = 0;
        animationDuration = 3000;
    }

    // Not animated: the dots would be redrawn for 3 s, that is, without pause at one reading a second.
    function moveTo(start, end) {
        timeAxis.min = start;
        timeAxis.max = end;
    }

    // Qt Charts reads past the end if it has to remove more points than there are.
    function removeOldest() {
        dots.removePoints(0, Math.min(2000, dots.count));
    }

    anchors.fill: parent
    animationDuration: 3000
    animationEasingCurve.bezierCurve: [0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.78, 0.93, 0.95, 1, 1]
    animationEasingCurve.type: Easing.BezierSpline
    animationOptions: ChartView.SeriesAnimations
    antialiasing: false
    backgroundColor: "transparent"
    legend.visible: false
    visible: false

    Behavior on timeScale {
        NumberAnimation {
            duration: layer.animationDuration
            easing: layer.animationEasingCurve
        }
    }

    onOpacityChanged: {
        if (opacity === 0)
            removeOldest();
        opacity = 1;
    }

    ValueAxis {
        gridVisible: false
        labelsVisible: false
        max: uiData ? uiData.xmax : 0
        min: uiData ? uiData.xmin : 0
        objectName: "seriesX" + layer.number
        visible: false
    }

    DateTimeAxis {
        id: timeAxis

        format: "hh:mm:ss"
        gridVisible: false
        labelsAngle: -45
        labelsVisible: false
        max: mainBackEnd ? mainBackEnd.maxTime() : new Date()
        min: mainBackEnd ? mainBackEnd.minTime() : new Date()
        objectName: "axis" + layer.letter + "X"
        tickCount: 9
        visible: false
    }

    LogValueAxis {
        id: logAxis

        gridVisible: false
        labelsVisible: false
        max: 3000
        min: 0
        objectName: "logValueAxisSeriesY" + layer.number
        visible: false
    }

    ValueAxis {
        id: linearAxis

        gridVisible: false
        labelsVisible: false
        max: 3000
        min: 0
        objectName: "valueAxisSeriesY" + layer.number
        visible: false
    }

    ScatterSeries {
        id: dots

        axisX: timeAxis
        axisY: linearAxis
        borderColor: layer.layerColor
        borderWidth: 2
        color: layer.layerColor
        markerSize: 3
        // The same for both layers, intentional: no legend shows it.
        name: "Второй слой"
        objectName: layer.letter.toLowerCase() + "LayerCloudSeries"
        // Qt Charts creates no graphics items for the points then. A new point of a series with
        // thousands of items would stall the window for 300 ms.
        useOpenGL: true
    }
}
