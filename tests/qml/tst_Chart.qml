// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtCharts
import QtTest

Item {
    id: root

    height: 100
    width: 100

    SignalSpy {
        id: removedTogether

        signalName: "pointsRemoved"
    }

    SignalSpy {
        id: removedSingly

        signalName: "pointRemoved"
    }

    TestCase {
        id: testCase

        property var window: null
        property var chartView: null
        property var first: null
        property var second: null

        function part(name) {
            const item = findChild(window.contentItem, name);
            if (item) {
                return item;
            }
            // A series and its axes belong to a chart's inner objects, out of the search's reach.
            for (const chartName of ["chartView", "chart1_id", "chart2_id"]) {
                const chart = findChild(window.contentItem, chartName);
                for (let i = 0; i < chart.count; ++i) {
                    const series = chart.series(i);
                    for (const object of [series, series.axisX, series.axisY]) {
                        if (object.objectName === name) {
                            return object;
                        }
                    }
                }
                const child = findChild(chart, name);
                if (child) {
                    return child;
                }
            }
            return findChild(window, name);
        }

        function warnings() {
            return testLog.warnings();
        }

        // Edges of the plot area in the window's content.
        function plot(chart) {
            const corner = chart.mapToItem(window.contentItem, chart.plotArea.x, chart.plotArea.y);
            return Qt.rect(corner.x, corner.y, chart.plotArea.width, chart.plotArea.height);
        }

        function setHeight(pixels) {
            window.minimumHeight = 640;
            window.height = pixels;
            tryCompare(window, "height", pixels);
        }

        function setRange(seconds) {
            for (let i = 0; i < 3 && mainBackEnd.xMinRange !== seconds; ++i) {
                mainBackEnd.changeRangeX();
            }
            compare(mainBackEnd.xMinRange, seconds);
        }

        function fill(series, count, spacing, height) {
            series.clear();
            const now = Date.now();
            for (let i = 0; i < count; ++i) {
                series.append(now - (count - i) * spacing, height);
            }
        }

        function readOnce(text) {
            mainBackEnd.firstCloudAlt(text);
            mainBackEnd.secondCloudAlt(text);
        }

        // fuzzyCompare() counts with single precision, too coarse for times.
        function msAgo(time) {
            return Math.abs(Date.now() - time.getTime());
        }

        // The second layer's opacity of 0.95 leaves no exact colour.
        function isColor(image, x, y, color) {
            const pixel = image.pixel(x, y);
            const wanted = Qt.color(color);
            return ["r", "g", "b"].every(part => Math.abs(pixel[part] - wanted[part]) < 0.05);
        }

        // Columns that hold a pixel of the colour in the given row of the plot.
        function columns(image, row, color) {
            const area = plot(chartView);
            const found = [];
            for (let x = Math.floor(area.x) + 1; x < area.x + area.width; ++x) {
                if (isColor(image, x, row, color)) {
                    found.push(x);
                }
            }
            return found;
        }

        // Middle columns of the dots whose middle lies in the row.
        function dots(image, row, color) {
            const middles = [];
            let run = [];
            for (const x of columns(image, row, color).concat([-1])) {
                if (run.length > 0 && x !== run[run.length - 1] + 1) {
                    middles.push((run[0] + run[run.length - 1]) / 2);
                    run = [];
                }
                run.push(x);
            }
            return middles;
        }

        function grab() {
            return grabImage(window.contentItem);
        }

        function initTestCase() {
            testLog.clear();
            const component = Qt.createComponent("qrc:/main");
            compare(component.status, Component.Ready, component.errorString());
            window = component.createObject(null);
            verify(window);
            chartView = part("chartView");
            first = part("fLayerCloudSeries");
            second = part("sLayerCloudSeries");
            verify(chartView && first && second);
            tryVerify(() => window.active, 30000);
            compare(warnings(), []);
            // As after a start: the grid is not animated any more.
            chartView.animationOptions = ChartView.SeriesAnimations;
        }

        function init() {
            testLog.clear();
            setHeight(750);
            wait(100);
            setRange(600);
            tryVerify(() => !part("widening").running, 30000);
            first.clear();
            second.clear();
            first.visible = true;
            second.visible = true;
            wait(50);
        }

        function cleanup() {
            compare(warnings(), []);
        }

        function test_axes_data() {
            const time = {tickCount: 9, format: "hh:mm:ss", labelsAngle: -45, visible: false};
            const bare = {labelsVisible: false, gridVisible: false, visible: false};
            return [
                {tag: "barCategoriesAxis", values: {titleText: "Date", visible: false}},
                {tag: "valueAxisX", values: {min: 0, max: 0, visible: false}},
                {tag: "axiX", values: time},
                {tag: "valueAxisY", values: {min: 0, max: 3000, titleText: "Высота (м)", labelsAngle: 0,
                                             visible: true}},
                {tag: "logValueAxisY", values: {max: 4000, titleText: "Высота (м)", minorTickCount: 0,
                                                visible: false}},
                {tag: "seriesX", values: bare},
                {tag: "axisFX", values: Object.assign({}, bare, time)},
                {tag: "logValueAxisSeriesY", values: Object.assign({max: 3000}, bare)},
                {tag: "valueAxisSeriesY", values: Object.assign({min: 0, max: 3000}, bare)},
                {tag: "seriesX2", values: bare},
                {tag: "axisSX", values: Object.assign({}, bare, time)},
                {tag: "logValueAxisSeriesY2", values: Object.assign({max: 3000}, bare)},
                {tag: "valueAxisSeriesY2", values: Object.assign({min: 0, max: 3000}, bare)},
            ];
        }

        function test_axes(row) {
            const axis = part(row.tag);
            verify(axis, row.tag);
            for (const name in row.values) {
                compare(axis[name], row.values[name], name);
            }
        }

        function test_series_data() {
            return [
                {tag: "fLayerCloudSeries", color: "#209FDF", opacity: 1, x: "axisFX",
                 y: "valueAxisSeriesY"},
                {tag: "sLayerCloudSeries", color: "#9DCC5B", opacity: 0.95, x: "axisSX",
                 y: "valueAxisSeriesY2"},
            ];
        }

        function test_series(row) {
            const series = part(row.tag);
            verify(Qt.colorEqual(series.color, row.color));
            verify(Qt.colorEqual(series.borderColor, row.color));
            compare(series.borderWidth, 2);
            compare(series.markerSize, 3);
            fuzzyCompare(series.opacity, row.opacity, 0.001);
            compare(series.name, "Второй слой");
            compare(series.axisX, part(row.x));
            compare(series.axisY, part(row.y));
        }

        function test_emptySeries_holdTheAxes_data() {
            return [
                {tag: "tempSeries", y: "logValueAxisY"},
                {tag: "tempSeries2", y: "valueAxisY"},
            ];
        }

        function test_emptySeries_holdTheAxes(row) {
            const series = part(row.tag);
            compare(series.name, "");
            compare(series.visible, false);
            compare(series.count, 0);
            compare(series.axisX, part("axiX"));
            compare(series.axisY, part(row.y));
        }

        function test_charts_settings() {
            verify(Qt.colorEqual(chartView.backgroundColor, "#eeeeee"));
            compare(chartView.backgroundRoundness, 5);
            compare(chartView.dropShadowEnabled, true);
            compare(chartView.antialiasing, false);
            compare(chartView.animationDuration, 3000);
            compare(chartView.legend.opacity, 0);
            compare(chartView.legend.font.pixelSize, 14);
            for (const name of ["chart1_id", "chart2_id"]) {
                const chart = part(name);
                compare(chart.backgroundColor.a, 0);
                compare(chart.legend.visible, false);
                compare(chart.antialiasing, false);
                compare(chart.animationOptions, ChartView.SeriesAnimations);
                compare(chart.animationDuration, 3000);
                compare(chart.animationEasingCurve.type, Easing.BezierSpline);
                const curve = chart.animationEasingCurve.bezierCurve;
                const wanted = [0.1, 0.2, 0.3, 0.4, 0.5, 0.6, 0.7, 0.78, 0.93, 0.95, 1, 1];
                compare(curve.length, wanted.length);
                for (let i = 0; i < wanted.length; ++i) {
                    fuzzyCompare(curve[i], wanted[i], 0.0001);
                }
            }
        }

        function test_plotAreas_anyHeight_coincide() {
            for (let height = 640; height <= 750; height += 11) {
                setHeight(height);
                tryVerify(() => plot(chartView).height % 4 === 0);
                const drawn = plot(chartView);
                for (const name of ["chart1_id", "chart2_id"]) {
                    const layer = plot(part(name));
                    compare(layer, drawn, name);
                }
                for (const name of ["firstDots", "secondDots"]) {
                    const item = part(name);
                    compare(item.mapToItem(window.contentItem, 0, 0), Qt.point(drawn.x, drawn.y), name);
                    compare(Qt.size(item.width, item.height), Qt.size(drawn.width, drawn.height), name);
                }
                // The dots' glow stays inside the layers' own rectangle.
                const layer = part("chart2_id");
                const corner = layer.mapToItem(window.contentItem, 0, 0);
                verify(drawn.x >= corner.x && drawn.y >= corner.y);
                verify(drawn.x + drawn.width <= corner.x + layer.width);
                verify(drawn.y + drawn.height <= corner.y + layer.height);
            }
        }

        function test_dots_onGridLine_data() {
            const rows = [];
            for (const height of [640, 695, 750]) {
                for (const range of [600, 3600, 10800]) {
                    rows.push({tag: height + " pixels, " + range + " s", height: height, range: range});
                }
            }
            return rows;
        }

        // Heights of 750, 1500 and 2250 m have lines of their own.
        function test_dots_onGridLine(row) {
            setHeight(row.height);
            wait(200);
            setRange(row.range);
            tryVerify(() => !part("widening").running, 30000);
            const now = Date.now();
            for (let i = 1; i < 10; ++i) {
                const time = now - row.range * 100 * i;
                first.append(time, 750 * (1 + i % 3));
                second.append(time + row.range * 50, 750 * (1 + i % 3));
            }
            mainBackEnd.updateVoidGraph();
            // A change of the window's height moves the dots for 3 s.
            let wrong = misplaced();
            for (let i = 0; i < 8 && wrong !== ""; ++i) {
                wait(500);
                wrong = misplaced();
            }
            compare(wrong, "");
        }

        // What is wrong with the three lines' dots, empty if nothing is.
        function misplaced() {
            const image = grab();
            const area = plot(chartView);
            for (const metres of [750, 1500, 2250]) {
                const line = Math.floor(area.y + area.height - metres / 3000 * area.height);
                if (!isColor(image, Math.round(area.x) + 3, line, part("valueAxisY").gridLineColor)) {
                    return metres + " m: no line in row " + line;
                }
                for (const color of ["#209FDF", "#9DCC5B"]) {
                    const middles = dots(image, line, color);
                    if (middles.length !== 3) {
                        return metres + " m: " + middles.length + " dots of " + color;
                    }
                    // As many pixels of a dot above the line as below it.
                    if (middles.some(x => reach(image, x, line, -1) !== reach(image, x, line, 1))) {
                        return metres + " m: dots of " + color + " beside the line";
                    }
                }
            }
            return "";
        }

        function reach(image, x, line, step) {
            const center = image.pixel(Math.round(x), line);
            let rows = 0;
            while (isColor(image, Math.round(x), line + step * (rows + 1), center)) {
                ++rows;
            }
            return rows;
        }

        function test_doubleClick_cyclesRangesAndTitles() {
            const area = part("rangeArea");
            const steps = [
                [3600, "Высота нижней границы облачности (1 час)"],
                [10800, "Высота нижней границы облачности (3 часа)"],
                [600, "Высота нижней границы облачности (10 минут)"],
            ];
            for (const step of steps) {
                testLog.clear();
                mouseDoubleClickSequence(area, area.width / 2, area.height / 2);
                verify(testLog.lines().includes("doubleClicked , doubleClicked , doubleClicked ！"));
                compare(mainBackEnd.xMinRange, step[0]);
                compare(part("chartName").text, step[1]);
                for (const name of ["axiX", "axisFX", "axisSX"]) {
                    const axis = part(name);
                    fuzzyCompare(axis.max.getTime() - axis.min.getTime(), step[0] * 1000, 100);
                    verify(msAgo(axis.max) < 1000, name);
                }
            }
            // From the first double-click on the title has its own text.
            window.cName = "другое";
            compare(part("chartName").text, steps[2][1]);
            window.cName = mainBackEnd.chartName;
        }

        function test_doubleClick_areaFillsTopmostChart() {
            const area = part("rangeArea");
            const chart = part("chart2_id");
            compare(area.mapToItem(null, 0, 0), chart.mapToItem(null, 0, 0));
            compare(area.width, chart.width);
            compare(area.height, chart.height);
        }

        function test_updateVoidGraph_movesThreeAxes() {
            wait(200);
            const before = Date.now();
            mainBackEnd.updateVoidGraph();
            for (const name of ["axiX", "axisFX", "axisSX"]) {
                verify(part(name).max.getTime() >= before, name);
            }
        }

        function test_reading_movesItsAxes_data() {
            return [
                {tag: "firstCloudAlt", moved: ["axiX", "axisFX"], kept: ["axisSX"]},
                {tag: "secondCloudAlt", moved: ["axisSX"], kept: ["axiX", "axisFX"]},
            ];
        }

        function test_reading_movesItsAxes(row) {
            mainBackEnd.updateVoidGraph();
            tryVerify(() => !part("widening").running, 30000);
            const before = Date.now();
            wait(1000);
            mainBackEnd[row.tag]("1500");
            for (const name of row.moved) {
                verify(part(name).max.getTime() > before, name);
            }
            for (const name of row.kept) {
                verify(part(name).max.getTime() <= before, name);
            }
        }

        // 3 hours stand on some 700 pixels: a tenth of a second is nothing to see, and what a busy
        // machine makes of it is not either.
        function test_slideBelowOnePixel_notApplied() {
            setRange(10800);
            mainBackEnd.updateVoidGraph();
            tryVerify(() => !part("widening").running, 10000);
            mainBackEnd.updateVoidGraph();
            const before = ["axisFX", "axisSX"].map(name => part(name).max.getTime());
            wait(100);
            readOnce("1500");
            compare(["axisFX", "axisSX"].map(name => part(name).max.getTime()), before);
        }

        function checkAnimationSettings() {
            for (const name of ["chart1_id", "chart2_id"]) {
                compare(part(name).animationOptions, ChartView.SeriesAnimations, name);
                compare(part(name).animationDuration, 3000, name);
                compare(part(name).opacity, 1, name);
            }
        }

        // All dots stand where they belong, a moment after the reading and not 3 s later.
        function checkDots(count, spacing) {
            const image = grab();
            const area = plot(chartView);
            const pixelsPerMs = area.width / (mainBackEnd.xMinRange * 1000);
            const line = Math.floor(area.y + area.height / 2);
            const middles = dots(image, line, "#209FDF");
            compare(middles.length, count);
            const end = part("axisFX").max.getTime();
            for (let i = 0; i < count; ++i) {
                const point = first.at(first.count - count + i);
                const x = area.x + area.width - (end - point.x) * pixelsPerMs;
                fuzzyCompare(middles[i] + 0.5, x, 1.6);
            }
        }

        function test_readings_eachSecond_allDotsMove() {
            fill(first, 20, 25000, 1500);
            fill(second, 20, 25000, 750);
            mainBackEnd.updateVoidGraph();
            wait(100);
            let previous = 0;
            for (let i = 0; i < 4; ++i) {
                wait(1000);
                readOnce("1500");
                checkAnimationSettings();
                verify(part("axisFX").max.getTime() > previous);
                previous = part("axisFX").max.getTime();
                wait(100);
                checkDots(20);
                checkAnimationSettings();
            }
        }

        // The dots take 3 s to their new places, on the way they are between the old and the new.
        function test_newWidth_movesDotsSlowly() {
            const item = part("firstDots");
            const before = item.timeScale;
            fuzzyCompare(before * 600000, 1, 1e-6);
            setRange(3600);
            verify(part("widening").running);
            compare(item.timeScale, before);
            tryVerify(() => item.timeScale < 0.9 * before && item.timeScale > before / 5);
            tryVerify(() => !part("widening").running, 30000);
            tryVerify(() => Math.abs(item.timeScale * 3600000 - 1) < 1e-6);
        }

        // They hold the points and the axes only; a marker for each point would stall the window.
        function test_layerCharts_areNotDrawn() {
            for (const name of ["chart1_id", "chart2_id"]) {
                compare(part(name).visible, false);
            }
            verify(first.useOpenGL);
            verify(second.useOpenGL);
        }

        function test_hiddenSeries_hasNoDots() {
            fill(first, 10, 50000, 1500);
            mainBackEnd.updateVoidGraph();
            wait(100);
            checkDots(10);
            first.visible = false;
            wait(100);
            checkDots(0);
            first.visible = true;
            wait(100);
            checkDots(10);
        }

        function test_newPoint_shownAtOnce() {
            fill(first, 10, 50000, 1500);
            mainBackEnd.updateVoidGraph();
            tryVerify(() => !part("widening").running, 30000);
            mainBackEnd.dropFCloud(Date.now() - 5000, 1500);
            mainBackEnd.dropSCloud(Date.now() - 5000, 750);
            mainBackEnd.updateVoidGraph();
            compare(first.count, 11);
            compare(second.count, 1);
            wait(100);
            checkDots(11);
        }

        function test_thinning_removesOldestInOneCall() {
            fill(first, 2020, 25000, 1500);
            fill(second, 2020, 25000, 750);
            const kept = first.at(2000);
            removedTogether.target = first;
            removedSingly.target = first;
            mainBackEnd.updateVoidGraph();
            mainBackEnd.removeGPoints();
            checkAnimationSettings();
            compare(first.count, 20);
            compare(second.count, 20);
            compare(first.at(0), kept);
            compare(removedTogether.count, 1);
            compare(removedSingly.count, 0);
            removedTogether.target = null;
            removedSingly.target = null;
            wait(100);
            checkDots(20);
            for (let i = 0; i < 3; ++i) {
                wait(1000);
                readOnce("1500");
                wait(100);
                checkDots(20);
                checkAnimationSettings();
            }
        }

        function test_thinning_fewPoints_removesThose_data() {
            return [
                {tag: "none", count: 0},
                {tag: "one", count: 1},
                {tag: "one too few", count: 1999},
            ];
        }

        function test_thinning_fewPoints_removesThose(row) {
            fill(first, row.count, 1000, 1500);
            fill(second, row.count, 1000, 750);
            mainBackEnd.removeGPoints();
            compare(first.count, 0);
            compare(second.count, 0);
        }

        function test_opacity_notZero_keepsPoints() {
            fill(first, 30, 1000, 1500);
            part("chart1_id").opacity = 0.5;
            compare(part("chart1_id").opacity, 1);
            compare(first.count, 30);
        }

        function test_heightsAboveScale_notSeen_data() {
            return [
                {tag: "no cloud", metres: 5000},
                {tag: "above the scale", metres: 3100},
            ];
        }

        function test_heightsAboveScale_notSeen(row) {
            fill(first, 10, 50000, row.metres);
            mainBackEnd.updateVoidGraph();
            wait(100);
            const image = grab();
            const area = plot(chartView);
            for (let y = Math.round(area.y) - 12; y < area.y + area.height; ++y) {
                compare(columns(image, y, "#209FDF").length, 0);
            }
            compare(part("valueAxisSeriesY").max, 3000);
            compare(part("valueAxisY").max, 3000);
            compare(first.count, 10);
        }

        function test_noCloud_plottedAt5000() {
            mainBackEnd.showTheCloud("0", "0");
            mainBackEnd.enButton();
            mainBackEnd.showTheCloud("0", "0");
            tryVerify(() => first.count > 0, 30000);
            compare(first.at(0).y, 5000);
            mainBackEnd.disableButton();
        }

        function test_nullAxis_keepsStoredAxis() {
            mainBackEnd.logAxisY = null;
            compare(mainBackEnd.logAxisY, part("logValueAxisSeriesY"));
            mainBackEnd.lineAxisY = null;
            compare(mainBackEnd.lineAxisY, part("valueAxisSeriesY"));
            compare(warnings().filter(line => !line.includes("Y == NULL")), []);
            testLog.clear();
        }

        function test_layers_glow() {
            fill(first, 1, 300000, 1500);
            mainBackEnd.updateVoidGraph();
            wait(300);
            const image = grab();
            const area = plot(chartView);
            const line = Math.floor(area.y + area.height / 2);
            const x = Math.round(dots(image, line, "#209FDF")[0]);
            const blueness = distance => {
                const pixel = image.pixel(x, line + distance);
                return pixel.b - pixel.r;
            };
            verify(blueness(4) > 0.1);
            verify(blueness(6) > 0.05);
            verify(blueness(4) > blueness(6));
            verify(blueness(12) < 0.01);
        }

        // Left of the chart, where its own shadow does not fall.
        function test_backgroundChart_glows() {
            tryCompare(part("titleText"), "opacity", 1, 30000);
            const corner = chartView.mapToItem(window.contentItem, 0, 0);
            const gray = distance => Math.round(255 * grab().pixel(Math.round(corner.x) + 8 - distance,
                                                                   Math.round(corner.y + chartView.height / 2)).r);
            const panel = 0xee;
            tryVerify(() => gray(1) < panel - 10);
            verify(gray(1) >= 0xcc - 2, gray(1));
            verify(gray(4) > gray(1) && gray(4) < panel, gray(4));
            compare(gray(20), panel);
        }

        name: "Chart"
        when: windowShown
    }
}
