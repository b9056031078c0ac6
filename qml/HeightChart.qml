// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtCharts
import Ork2Charts

// Heights of both layers over a time window that ends now.
Item {
    id: chart

    // Shows the dots; covers the parent of the chart.
    property Item foreground: parent
    property bool logarithmic: false
    property string title
    readonly property alias firstLayer: firstLayer
    readonly property alias secondLayer: secondLayer
    // The background chart's plot area in the layers' coordinates, so that the dots match the drawn scale.
    readonly property rect plotOnLayer: Qt.rect(background.plotArea.x - layers.x,
                                                background.plotArea.y - layers.y,
                                                background.plotArea.width, background.plotArea.height)

    component LayerDots: CloudDots {
        required property LayerChart layerChart

        height: chart.plotOnLayer.height
        hiddenChart: layerChart
        highest: layerChart.linearAxis.max
        latest: layerChart.timeAxis.max.getTime()
        lowest: layerChart.linearAxis.min
        opacity: layerChart.dotOpacity
        series: layerChart.dots
        timeScale: layerChart.timeScale
        width: chart.plotOnLayer.width
        x: chart.x + layers.x + chart.plotOnLayer.x
        y: chart.y + layers.y + chart.plotOnLayer.y
    }

    function windowStart() {
        return mainBackEnd ? mainBackEnd.minTime() : new Date();
    }

    function windowEnd() {
        return mainBackEnd ? mainBackEnd.maxTime() : new Date();
    }

    function isWidened(layer) {
        const seconds = (layer.timeAxis.max.getTime() - layer.timeAxis.min.getTime()) / 1000;
        return Math.abs(seconds - mainBackEnd.xMinRange) > 1;
    }

    // Between two plotted points a slide of less than a pixel is invisible, and dots that are still
    // moving to a new width are left unchanged.
    function isSlideSeen(layer) {
        const pixel = mainBackEnd.xMinRange * 1000 / background.plotArea.width;
        return !widening.running && windowEnd().getTime() - layer.timeAxis.max.getTime() >= pixel;
    }

    function moveScale() {
        background.timeAxis.min = windowStart();
        background.timeAxis.max = windowEnd();
    }

    function moveLayer(layer) {
        layer.moveTo(windowStart(), windowEnd());
    }

    // After each plotted point and after a change of the width.
    function moveToNow() {
        if (isWidened(secondLayer))
            widening.restart();
        moveScale();
        moveLayer(firstLayer);
        moveLayer(secondLayer);
    }

    // After each reading, between two plotted points.
    function slideFirstLayer() {
        if (isSlideSeen(firstLayer)) {
            moveScale();
            moveLayer(firstLayer);
        }
    }

    function slideSecondLayer() {
        if (isSlideSeen(secondLayer))
            moveLayer(secondLayer);
    }

    function showLayers(shown) {
        firstLayer.dots.visible = shown;
        secondLayer.dots.visible = shown;
        background.timeAxis.visibleChanged(background.timeAxis.visible);
        background.animationOptions = ChartView.SeriesAnimations;
    }

    function animateAppearance() {
        background.animationOptions = ChartView.AllAnimations;
    }

    // Removes the oldest points of both layers.
    function thin() {
        firstLayer.thin();
        secondLayer.thin();
    }

    Timer {
        id: widening

        interval: secondLayer.animationDuration
        objectName: "widening"
    }

    ChartGlow {
        anchors.fill: parent
    }

    BackgroundChart {
        id: background

        anchors.fill: parent
    }

    Text {
        id: chartName

        anchors.horizontalCenter: parent.horizontalCenter
        anchors.top: parent.top
        anchors.topMargin: 15
        font.family: Theme.textFamily
        font.pixelSize: 18
        objectName: "chartName"
        text: chart.title
    }

    ChartLegend {
        anchors.horizontalCenter: chartName.horizontalCenter
        anchors.top: chartName.bottom
        anchors.topMargin: 3
    }

    Item {
        id: layers

        anchors.bottom: parent.bottom
        anchors.bottomMargin: 51
        anchors.left: parent.left
        anchors.leftMargin: 68
        anchors.right: parent.right
        anchors.rightMargin: 25
        anchors.top: chartName.bottom
        anchors.topMargin: 18

        LayerChart {
            id: firstLayer

            dotOpacity: 1
            layerColor: Theme.firstLayer
            letter: "F"
            number: ""
            objectName: "chart1_id"
            plotArea: chart.plotOnLayer
        }

        LayerChart {
            id: secondLayer

            dotOpacity: 0.95
            layerColor: Theme.secondLayer
            letter: "S"
            number: "2"
            objectName: "chart2_id"
            plotArea: chart.plotOnLayer
        }
    }

    LayerDots {
        layerChart: firstLayer
        objectName: "firstDots"
        parent: chart.foreground
    }

    LayerDots {
        layerChart: secondLayer
        objectName: "secondDots"
        parent: chart.foreground
    }

    MouseArea {
        Accessible.description: "Двойной щелчок меняет промежуток времени"
        Accessible.name: chartName.text
        Accessible.role: Accessible.Chart
        anchors.fill: layers
        objectName: "rangeArea"

        onDoubleClicked: {
            console.log("doubleClicked , doubleClicked , doubleClicked ！");
            mainBackEnd.changeRangeX();
            chartName.text = mainBackEnd.chartName;
        }
    }

    Text {
        anchors.left: parent.left
        anchors.leftMargin: 55
        anchors.top: parent.top
        anchors.topMargin: 84
        font.family: Theme.textFamily
        font.pointSize: 9
        objectName: "lnTopAltText"
        text: "3000.0"
        visible: chart.logarithmic
    }
}
