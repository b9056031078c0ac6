// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtCharts

// Frame, height scale and grid of the chart; the layers are drawn on top of it.
ChartView {
    id: chartView

    readonly property int lowestMargin: 40
    readonly property real pixelRatio: Screen.devicePixelRatio
    readonly property alias timeAxis: axiX

    // The five lines of the grid are equally thick if the distance between them is a whole number of pixels.
    function fitGrid() {
        const highest = Math.round(plotArea.height) + margins.bottom - lowestMargin;
        margins.bottom = lowestMargin + highest % gridStep();
    }

    function gridStep() {
        for (let quarter = 1; quarter <= 10; ++quarter) {
            const pixels = quarter * pixelRatio;
            if (Math.abs(pixels - Math.round(pixels)) < 0.001)
                return 4 * quarter;
        }
        return 4;
    }

    animationDuration: 3000
    antialiasing: false
    backgroundColor: Theme.panel
    backgroundRoundness: 5
    dropShadowEnabled: true
    legend.font.family: Theme.textFamily
    legend.font.pixelSize: 14
    legend.opacity: 0
    margins.bottom: lowestMargin
    margins.right: 26
    objectName: "chartView"

    onPixelRatioChanged: fitGrid()
    onPlotAreaChanged: fitGrid()

    // Not attached to a series, like valueAxisX.
    CategoryAxis {
        id: barCategoriesAxis

        objectName: "barCategoriesAxis"
        titleText: "Date"
        visible: false
    }

    ValueAxis {
        id: valueAxisX

        max: uiData ? uiData.xmax : 0
        min: uiData ? uiData.xmin : 0
        objectName: "valueAxisX"
        visible: false
    }

    DateTimeAxis {
        id: axiX

        format: "hh:mm:ss"
        labelsAngle: -45
        max: mainBackEnd ? mainBackEnd.maxTime() : new Date()
        min: mainBackEnd ? mainBackEnd.minTime() : new Date()
        objectName: "axiX"
        tickCount: 9
        visible: false
    }

    ValueAxis {
        id: valueAxisY

        gridLineColor: "#cccccc"
        labelsAngle: 0
        labelsFont.family: Theme.textFamily
        labelsFont.pixelSize: 14
        max: 3000
        min: 0
        objectName: "valueAxisY"
        titleFont.family: Theme.textFamily
        titleFont.pixelSize: 14
        titleText: "Высота (м)"
    }

    LogValueAxis {
        id: logValueAxisY

        max: 4000
        min: 0
        minorTickCount: 0
        objectName: "logValueAxisY"
        titleText: "Высота (м)"
        visible: false
    }

    // Two empty series hold the axes in the chart.
    ScatterSeries {
        id: tempSeries

        axisX: axiX
        axisY: logValueAxisY
        name: ""
        objectName: "tempSeries"
        visible: false
    }

    ScatterSeries {
        id: tempSeries2

        axisX: axiX
        axisY: valueAxisY
        name: ""
        objectName: "tempSeries2"
        visible: false
    }
}
