// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtCharts
import QtTest

Item {
    id: root

    height: 100
    width: 100

    SignalSpy {
        id: axisVisibility

        signalName: "visibleChanged"
    }

    SignalSpy {
        id: blinks

        signalName: "started"
    }

    SignalSpy {
        id: closings

        signalName: "closing"
    }

    Connections {
        function onOpacityChanged() {
            testCase.lowestOpacity = Math.min(testCase.lowestOpacity, testCase.banner.opacity);
        }

        target: testCase.banner
    }

    TestCase {
        id: testCase

        readonly property int titleStrip: 40
        readonly property int panelTop: 8 + titleStrip + 6
        property var window: null
        property var startButton: null
        property var banner: null
        property real lowestOpacity: 1

        function part(name) {
            const item = findChild(window.contentItem, name);
            return item ? item : findChild(window, name);
        }

        function series(name) {
            return part(name).series(0);
        }

        function logged(line) {
            return testLog.lines().includes(line);
        }

        function position(item) {
            const corner = item.mapToItem(window.contentItem, 0, 0);
            return Qt.rect(corner.x, corner.y, item.width, item.height);
        }

        function statusText() {
            return findChild(window.footer, "statusLabel").text;
        }

        function initTestCase() {
            testLog.clear();
            testLog.store("SETTINGS/_NUM", "42");
            testLog.store("SETTINGS/_YEAR", "2021");
            testLog.store("SETTINGS/_COM", "no such port");
            const component = Qt.createComponent("qrc:/main");
            compare(component.status, Component.Ready, component.errorString());
            window = component.createObject(null);
            verify(window);
            startButton = part("startButton");
            banner = part("errorText");
            verify(startButton && banner);
        }

        function init() {
            window.visible = true;
            window.requestActivate();
            tryVerify(() => window.active, 30000);
        }

        function cleanup() {
            startButton.checked = false;
            for (const name of ["sWindow", "numberWindow", "aboutWindow", "controlPanel", "sqlSettingsWnd"]) {
                part(name).close();
            }
            mainBackEnd.noError();
            window.height = 750;
            compare(testLog.warnings(), []);
            testLog.clear();
        }

        // Runs first by its name: what the document has done at its start.
        function test_0_start_stepsInOrder() {
            const steps = ["ORK-2 N42", "ORK-2 Y2021", "ComPort in QML from settings C++: no such port"];
            const places = steps.map(step => testLog.lines().indexOf(step));
            verify(places[0] >= 0);
            verify(places[0] < places[1]);
            verify(places[1] < places[2]);
            compare(window.unitNum, "42");
            compare(window.unitYr, "2021");
            compare(part("sWindow").currentPortNum, "no such port");
            compare(part("numberWindow").uNumber, "42");
            compare(part("numberWindow").uYear, "2021");
            compare(uiData.xy, series("chart1_id"));
            compare(uiData2.xy, series("chart2_id"));
            compare(window.cName, mainBackEnd.chartName);
            compare(part("chartView").animationOptions, ChartView.AllAnimations);
            compare(mainBackEnd.lineAxisY.objectName, "valueAxisSeriesY");
            compare(mainBackEnd.logAxisY.objectName, "logValueAxisSeriesY");
            const line = testLog.lines().findIndex(text => text.startsWith("setLineAx"));
            const log = testLog.lines().findIndex(text => text.startsWith("setLogAx"));
            verify(places[2] < line && line < log);
            compare(testLog.warnings(), []);
        }

        function test_0_window_asDeclared() {
            compare(window.title, "Измеритель высоты облаков ОРК-2");
            compare(window.width, 900);
            compare(window.height, 750);
            compare(window.minimumWidth, 900);
            compare(window.maximumWidth, 900);
            compare(window.minimumHeight, 750);
            compare(window.maximumHeight, 750);
            compare(window.counterData, " Статус: Прибор остановлен");
            compare(window.firstCloudAlt, "----");
            compare(window.secondCloudAlt, "----");
            compare(window.chanelLED, "#3f3f3f");
            compare(window.noFlashStr, "Нет вспышки лампы!!!");
            compare(window.noDataStr, "Ошибка данных!");
            compare(window.noReadyStr, "Нет готовности данных");
            compare(window.test, false);
            compare(window.lnYaxis, false);
            compare(window.i, 0);
            compare(typeof window.exitApp, "function");
        }

        function test_lowScreen_data() {
            return [
                {tag: "850 pixels", screen: 850, height: 750},
                {tag: "849 pixels", screen: 849, height: 640},
                {tag: "800 pixels", screen: 800, height: 640},
            ];
        }

        function test_lowScreen(row) {
            window.minimumHeight = 750;
            window.height = 750;
            window.fitScreen(row.screen);
            compare(window.minimumHeight, row.height);
            compare(window.maximumHeight, 750);
            tryCompare(window, "height", row.height);
        }

        function test_geometry_data() {
            const panelWidth = 900 - 16;
            return [
                {tag: "titleStrip", x: 8, y: 8, width: panelWidth, height: 40},
                {tag: "panel", x: 8, y: panelTop, width: panelWidth, bottom: 8},
                {tag: "firstLcd", x: 8 + 140, y: panelTop + 45, width: 150, height: 60},
                {tag: "secondLcd", x: 8 + panelWidth - 140 - 150, y: panelTop + 45, width: 150, height: 60},
                {tag: "chanelID", x: 440, y: panelTop + 60, width: 20, height: 20},
                {tag: "chanelCaption", centerX: 450, y: panelTop + 80},
                {tag: "chartView", x: 28, y: panelTop + 120, width: panelWidth - 40,
                 bottom: 8 + 25 + 23 + 55},
                {tag: "chartName", centerX: 450, y: panelTop + 120 + 15},
                {tag: "chartLegend", centerX: 450, width: 350, height: 20},
                {tag: "errorText", centerX: 450, y: panelTop + 120 + 165},
                {tag: "lnTopAltText", x: 28 + 55, y: panelTop + 120 + 84},
                {tag: "lineLogScale", x: 28 + 25, top: 8 + 25 + 23 + 55},
                {tag: "buttonCP", x: 8 + 35, width: 150, bottom: 8 + 25},
                {tag: "startButton", x: 8 + panelWidth - 35 - 92, width: 92, bottom: 8 + 25},
                {tag: "numRectangle", x: 355, width: 190, height: 90, bottom: 8 + 10},
                {tag: "numberBox", x: 355 + 14, width: 58, height: 20, bottom: 8 + 10 + 10},
                {tag: "yearBox", x: 355 + 112, width: 58, height: 20, bottom: 8 + 10 + 10},
            ];
        }

        // All in the window's content; "bottom" and "top" count from its lower edge.
        function test_geometry(row) {
            window.minimumHeight = 640;
            for (const height of [750, 640]) {
                window.height = height;
                tryCompare(window, "height", height);
                const content = window.contentItem.height;
                tryCompare(part("panel"), "height", content - panelTop - 8);
                const place = position(part(row.tag));
                for (const name of ["x", "y", "width", "height"]) {
                    if (row[name] !== undefined) {
                        compare(place[name], row[name], name + " at " + height);
                    }
                }
                if (row.bottom !== undefined) {
                    compare(content - place.y - place.height, row.bottom, "bottom at " + height);
                }
                if (row.top !== undefined) {
                    compare(content - place.y, row.top, "top at " + height);
                }
                if (row.centerX !== undefined) {
                    fuzzyCompare(place.x + place.width / 2, row.centerX, 0.51);
                }
            }
        }

        function test_geometry_ofChartParts() {
            const chart = position(part("chartView"));
            const name = position(part("chartName"));
            const legend = position(part("chartLegend"));
            compare(legend.y, name.y + name.height + 3);
            for (const layer of ["chart1_id", "chart2_id"]) {
                const place = position(part(layer));
                compare(place.x, chart.x + 68);
                compare(place.x + place.width, chart.x + chart.width - 25);
                compare(place.y, name.y + name.height + 18);
                compare(place.y + place.height, chart.y + chart.height - 51);
            }
            const center = legend.x + legend.width / 2;
            const first = position(part("firstSquare"));
            const second = position(part("secondSquare"));
            for (const square of [first, second]) {
                compare(square.width, 10);
                compare(square.height, 10);
                compare(square.y, legend.y + 5);
            }
            compare(first.x + 10, center - 110);
            compare(second.x, center + 20);
            compare(position(part("firstLegend")).x, first.x + 14);
            compare(position(part("secondLegend")).x, second.x + 14);
        }

        function test_texts_data() {
            return [
                {tag: "titleText", text: "Измеритель высоты облаков ОРК-2", points: 20},
                {tag: "chanelCaption", text: "Резерв", points: 12},
                {tag: "lnTopAltText", text: "3000.0", points: 9},
                {tag: "chartName", text: "Высота нижней границы облачности (10 минут)", pixels: 18},
                {tag: "firstLegend", text: "Первый слой", pixels: 14},
                {tag: "secondLegend", text: "Второй слой", pixels: 14},
                {tag: "errorText", pixels: 48},
                {tag: "lineLogScale", text: "lg(H)"},
                {tag: "buttonCP", text: "Панель управления"},
                {tag: "startButton", text: "Запуск"},
            ];
        }

        function test_texts(row) {
            const item = part(row.tag);
            if (row.text !== undefined) {
                compare(item.text, row.text);
            }
            if (row.points !== undefined) {
                compare(item.font.pointSize, row.points);
            }
            if (row.pixels !== undefined) {
                compare(item.font.pixelSize, row.pixels);
            }
        }

        function test_colors() {
            const wanted = {titleStrip: "#eeeeee", chanelID: "#6f6f6f", chartLegend: "#eeeeee",
                            firstSquare: "#209FDF", secondSquare: "#9DCC5B", errorText: "#a02222",
                            numberBox: "#eeeeee", yearBox: "#eeeeee"};
            for (const name in wanted) {
                verify(Qt.colorEqual(part(name).color, wanted[name]), name);
            }
            compare(part("firstLcd").itemColor.toLowerCase(), "#eeeeee");
            compare(part("secondLcd").itemColor.toLowerCase(), "#eeeeee");
            compare(part("lnTopAltText").visible, false);
            compare(banner.visible, false);
        }

        function test_scaleSwitch_cannotBeOperated() {
            const scale = part("lineLogScale");
            compare(scale.enabled, false);
            mouseClick(scale);
            compare(scale.checked, false);
        }

        function test_title_fadesIn() {
            tryCompare(part("titleText"), "opacity", 1, 30000);
            compare(part("titleShadow").opacity, 1);
            window.visible = false;
            window.visible = true;
            tryVerify(() => part("titleText").opacity < 0.5);
            fuzzyCompare(part("titleShadow").opacity, part("titleText").opacity, 0.01);
            const half = Date.now();
            tryCompare(part("titleText"), "opacity", 1, 30000);
            verify(Date.now() - half > 3000);
        }

        // Below the text, and without the text itself: drawn twice, letters are fat.
        function test_title_castsShadow() {
            const shadow = part("titleShadow");
            compare(shadow.source, part("titleText"));
            compare(shadow.shadowBlur, 0.1);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
            const siblings = Array.from(shadow.parent.children);
            verify(siblings.indexOf(shadow) < siblings.indexOf(part("titleText")));

            tryCompare(part("titleText"), "opacity", 1, 30000);
            part("titleText").visible = false;
            const picture = grabImage(window.contentItem);
            part("titleText").visible = true;
            const strip = position(part("titleStrip"));
            let darkest = 255;
            let shaded = 0;
            for (let y = strip.y + 8; y < strip.y + strip.height - 8; y++) {
                for (let x = strip.x + 8; x < strip.x + strip.width - 8; x++) {
                    darkest = Math.min(darkest, picture.red(x, y));
                    shaded += picture.red(x, y) < 220 ? 1 : 0;
                }
            }
            verify(shaded > 500, shaded);
            verify(darkest > 150, darkest);
        }

        function test_heights_codesReplaced_data() {
            return [
                {tag: "height", text: "1234", shown: "1234"},
                {tag: "5000", text: "5000", shown: "----"},
                {tag: "9999", text: "9999", shown: "----"},
                {tag: "8888", text: "8888", shown: "----"},
                {tag: "7777", text: "7777", shown: "----"},
                {tag: "leading nought", text: "05000", shown: "05000"},
                {tag: "decimal", text: "5000.0", shown: "5000.0"},
                {tag: "dashes", text: "----", shown: "----"},
            ];
        }

        function test_heights_codesReplaced(row) {
            mainBackEnd.firstCloudAlt("17");
            mainBackEnd.secondCloudAlt("18");
            mainBackEnd.firstCloudAlt(row.text);
            compare(window.firstCloudAlt, row.shown);
            compare(part("firstLcd").lcdData, row.shown);
            compare(part("secondLcd").lcdData, "18");
            verify(logged("First layer of cloud altitude: " + row.text));
            mainBackEnd.secondCloudAlt(row.text);
            compare(window.secondCloudAlt, row.shown);
            compare(part("secondLcd").lcdData, row.shown);
            verify(logged("Second layer of cloud altitude: " + row.text));
        }

        function test_readOuts_captions() {
            compare(part("firstLcd").lcdText, "Первый слой облаков (м)");
            compare(part("secondLcd").lcdText, "Второй слой облаков (м)");
        }

        function test_status_data() {
            return [
                {tag: "stopped", text: " Статус: Прибор остановлен", shown: "  Статус: Прибор остановлен"},
                {tag: "tab and carriage return", text: "[12:34:56.789]:\t >> Открыт!\r",
                 shown: " [12:34:56.789]:  >> Открыт!"},
                {tag: "markup", text: "<b>a</b>", shown: " <b>a</b>"},
            ];
        }

        function test_status(row) {
            mainBackEnd.sendCounter(row.text);
            compare(window.counterData, row.text);
            compare(statusText(), row.shown);
            verify(logged(row.text));
            compare(findChild(window.footer, "statusLabel").lineCount, 1);
        }

        function test_status_long_elided() {
            mainBackEnd.sendCounter("Очень длинное сообщение ".repeat(20));
            const label = findChild(window.footer, "statusLabel");
            tryVerify(() => label.truncated);
            const left = label.mapToItem(null, 0, 0).x;
            verify(left >= 0 && left + label.width <= window.width);
            verify(label.contentHeight <= window.footer.height);
            mainBackEnd.sendCounter(" Статус: Прибор остановлен");
        }

        function test_banner_data() {
            return [
                {tag: "noFlashError", text: "Нет вспышки лампы!!!"},
                {tag: "noDataError", text: "Ошибка данных!"},
                {tag: "noReadyError", text: "Нет готовности данных"},
            ];
        }

        // On a busy machine the lowest moment of a blink may fall between two frames.
        function fadesInBlink(tell) {
            for (let i = 0; i < 5 && lowestOpacity >= 0.2; ++i) {
                lowestOpacity = 1;
                tell();
                tryVerify(() => !part("blink").running);
            }
            return lowestOpacity < 0.2;
        }

        function test_banner_fadesFor300MsEachWay_andFor3sUnseen() {
            const steps = Array.from(part("blink").animations);
            compare(steps.map(step => step.duration), [300, 300]);
            compare(steps.map(step => [step.from, step.to]), [[1, 0], [0, 1]]);
            compare(steps.map(step => step.easing.type), [Easing.InOutQuad, Easing.InOutQuad]);
            compare(part("fadeOut").duration, 3000);
            compare(part("fadeOut").easing.type, Easing.OutQuad);
        }

        function test_banner(row) {
            lowestOpacity = 1;
            verify(fadesInBlink(() => {
                mainBackEnd[row.tag]();
                compare(banner.visible, true);
                compare(banner.text, row.text);
                verify(part("blink").running);
            }));
            compare(banner.opacity, 1);
            verify(banner.width <= part("chartView").width);
            mainBackEnd.noError();
            compare(banner.visible, false);
        }

        function test_banner_threeErrors_threeBlinks() {
            blinks.target = part("blink");
            blinks.clear();
            for (let i = 0; i < 3; ++i) {
                mainBackEnd.noDataError();
                compare(banner.visible, true);
                compare(banner.text, "Ошибка данных!");
                // The step before was completed at once, so each blink starts from full opacity.
                compare(banner.opacity, 1);
                verify(part("blink").running);
                tryVerify(() => banner.opacity < 0.3 || !part("blink").running);
            }
            compare(blinks.count, 3);
            tryVerify(() => !part("blink").running);
            compare(banner.opacity, 1);
            compare(banner.visible, true);
        }

        function test_banner_errorDuringFade_endsOpaque() {
            mainBackEnd.noDataError();
            tryVerify(() => !part("blink").running);
            mainBackEnd.noError();
            verify(part("fadeOut").running);
            tryVerify(() => banner.opacity < 0.8);
            mainBackEnd.noFlashError();
            tryVerify(() => !part("blink").running);
            compare(banner.opacity, 1);
            wait(300);
            compare(banner.opacity, 1);
            compare(banner.visible, true);
        }

        function test_noError_fadesUnseen() {
            mainBackEnd.noDataError();
            tryVerify(() => !part("blink").running);
            mainBackEnd.noError();
            compare(banner.visible, false);
            tryVerify(() => !part("fadeOut").running);
            compare(banner.opacity, 0);
            mainBackEnd.noError();
            verify(!part("fadeOut").running);
            compare(banner.opacity, 0);
        }

        function test_chanel_followsFlag() {
            const lamp = part("chanelID");
            compare([part("chanelOn").duration, part("chanelOff").duration], [500, 500]);
            for (const flag of [true, true, false, false, true]) {
                mainBackEnd.chanelLED(flag);
                verify(logged("Chanel: " + flag));
                tryVerify(() => Qt.colorEqual(lamp.color, flag ? "#fa4444" : "#6f6f6f"));
                compare(lamp.Accessible.description, flag ? "горит" : "не горит");
                compare(window.test, !flag);
            }
            mainBackEnd.chanelLED(false);
            tryVerify(() => Qt.colorEqual(lamp.color, "#6f6f6f"));
            compare(lamp.border.width, 1);
            verify(Qt.colorEqual(lamp.border.color, "#4f4f4f"));
        }

        function test_startButton_twice() {
            const first = series("chart1_id");
            const second = series("chart2_id");
            axisVisibility.target = part("chartView").series(0).axisX;
            axisVisibility.clear();
            mouseClick(startButton);
            compare(startButton.checked, true);
            compare(startButton.text, "Стоп");
            verify(logged("Запускаем таймер"));
            compare(mainBackEnd.enabledButton, true);
            compare(first.visible, true);
            compare(second.visible, true);
            compare(axisVisibility.count, 1);
            compare(axisVisibility.target.objectName, "axiX");
            compare(axisVisibility.target.visible, false);
            compare(part("chartView").animationOptions, ChartView.SeriesAnimations);
            verify(!logged("Таймер остановлен"));
            part("chartView").animationOptions = ChartView.AllAnimations;
            mouseClick(startButton);
            compare(startButton.checked, false);
            compare(startButton.text, "Запуск");
            verify(logged("Таймер остановлен"));
            compare(mainBackEnd.enabledButton, false);
            compare(first.visible, false);
            compare(second.visible, false);
            compare(axisVisibility.count, 2);
            compare(part("chartView").animationOptions, ChartView.SeriesAnimations);
            axisVisibility.target = null;
        }

        function test_plate_showsNumberAndYear() {
            mainBackEnd.sendUnitYearNumber("7", "2019");
            verify(logged("ORK-2 N7"));
            verify(logged("ORK-2 Y2019"));
            compare(part("numberBox").text, "7");
            compare(part("yearBox").text, "2019");
        }

        function test_plate_textsAre12Points() {
            for (const name of ["numberBox", "yearBox"]) {
                compare(findChild(part(name), "plateText").font.pointSize, 12);
            }
        }

        function test_plate_long_isElidedAndTold_data() {
            return [
                {tag: "numberBox", told: "Номер прибора: ORK-2/2021-000123"},
                {tag: "yearBox", told: "Год выпуска: ORK-2/2021-000123"},
            ];
        }

        function test_plate_long_isElidedAndTold(row) {
            const number = "ORK-2/2021-000123";
            const plateBox = part(row.tag);
            const text = findChild(plateBox, "plateText");
            const tip = findChild(plateBox, "fullText");
            mainBackEnd.sendUnitYearNumber("7", "2021");
            compare(text.truncated, false);
            compare(text.width, text.implicitWidth);
            mouseMove(plateBox, 10, 10);
            verify(!tip.shortened);
            mainBackEnd.sendUnitYearNumber(number, number);
            tryCompare(text, "truncated", true);
            verify(text.x > 0 && text.x + text.width < plateBox.width);
            compare(text.elide, Text.ElideRight);
            compare(plateBox.Accessible.name, row.told);
            mouseMove(plateBox, 12, 10);
            tryCompare(tip, "visible", true);
            compare(tip.text, number);
            mainBackEnd.sendUnitYearNumber("7", "2021");
            tryCompare(tip, "visible", false);
        }

        function test_settingsSignals() {
            settings.sendSettingsToQml("text of the file");
            verify(logged("Received in QML from settings C++: text of the file"));
            compare(part("sWindow").dataFile, "text of the file");
            settings.sendComPortSettingsToQml("ttyS7");
            verify(logged("Received ComPort in QML from settings C++: ttyS7"));
            compare(part("sWindow").dataCpp, "ttyS7");
            mainBackEnd.sendActualPortNumber("ttyS8");
            verify(logged("ComPort in QML from settings C++: ttyS8"));
            compare(part("sWindow").currentPortNum, "ttyS8");
        }

        function test_panels_hiddenWithTheirTitles_data() {
            return [
                {tag: "sWindow", title: "Параметры"},
                {tag: "numberWindow", title: "Номер прибора"},
                {tag: "aboutWindow", title: "О нас..."},
                {tag: "controlPanel", title: "Панель управления"},
                {tag: "sqlSettingsWnd", title: "Параметры SQL сервера"},
            ];
        }

        function test_panels_hiddenWithTheirTitles(row) {
            compare(part(row.tag).title, row.title);
            compare(part(row.tag).visible, false);
        }

        function test_panels_openAndClose_data() {
            return [
                {tag: "menu: settings", from: () => window.header, signal: "buttonSettings",
                 panel: "sWindow", exit: "exitSettings"},
                {tag: "menu: number", from: () => window.header, signal: "buttonNumber",
                 panel: "numberWindow", exit: "exitNumber"},
                {tag: "menu: about", from: () => window.header, signal: "buttonAbout",
                 panel: "aboutWindow", exit: "exitAbout"},
                {tag: "button: control panel", from: () => part("buttonCP"), signal: "clicked",
                 panel: "controlPanel", exit: "exitCP"},
                {tag: "controller: control panel", from: () => mainBackEnd, signal: "openControlPanel",
                 panel: "controlPanel", exit: "exitCP"},
                {tag: "control panel: settings", from: () => part("controlPanel"),
                 signal: "connectionButton", panel: "sWindow", exit: "exitSettings"},
            ];
        }

        function test_panels_openAndClose(row) {
            const panel = part(row.panel);
            for (let i = 0; i < 2; ++i) {
                row.from()[row.signal]();
                tryCompare(panel, "visible", true);
                wait(50);
                compare(panel.visible, true);
                panel[row.exit]();
                tryCompare(panel, "visible", false);
            }
        }

        function test_sqlPanel_closesByItsExit() {
            const panel = part("sqlSettingsWnd");
            panel.visible = true;
            tryCompare(panel, "visible", true);
            panel.exitSqlSettings();
            compare(panel.visible, false);
        }

        function test_settingsPanel_exit_savesPort() {
            const panel = part("sWindow");
            panel.portNum = "COM17";
            panel.setComNum();
            verify(logged("ComPort number in Main: COM17"));
            panel.exitSettings();
            compare(testLog.storedText("SETTINGS/_COM"), "COM17");
            testLog.store("SETTINGS/_COM", "no such port");
            mainBackEnd.updateComPortNumber();
        }

        function test_settingsPanel_readFile_asksSettings() {
            part("sWindow").readFile();
            verify(logged("Settings started"));
        }

        function test_numberPanel_exit_savesNumberAndYear() {
            const panel = part("numberWindow");
            panel.uNumber = "99";
            panel.uYear = "2020";
            panel.exitNumber();
            verify(logged("Unit number: 99"));
            verify(logged("Unit year:2020"));
            compare(testLog.storedText("SETTINGS/_NUM"), "99");
            compare(testLog.storedText("SETTINGS/_YEAR"), "2020");
            compare(window.unitNum, "99");
            compare(part("yearBox").text, "2020");
        }

        function test_dataFolder_opened_data() {
            return [
                {tag: "menu", from: () => window.header, signal: "buttonOpenFolder"},
                {tag: "control panel", from: () => part("controlPanel"), signal: "openDataFolderButton"},
            ];
        }

        function test_dataFolder_opened(row) {
            row.from()[row.signal]();
            tryVerify(() => testLog.openedUrls().length === 1);
            verify(testLog.openedUrls()[0].endsWith("/Data"));
        }

        function test_tray() {
            const tray = part("trayIcon");
            compare(tray.visible, true);
            compare(tray.icon.source.toString(), "qrc:/img/logoKAS.png");
            compare(tray.menu.items.length, 1);
            compare(tray.menu.items[0].text, "Выход");
            window.visible = false;
            tray.activated(0);
            tryCompare(window, "visible", true);
            tryVerify(() => window.active, 30000);
        }

        function test_tray_windowBehindAnother_isActivated() {
            const other = part("controlPanel");
            window.open(other);
            tryVerify(() => other.active, 30000);
            verify(!window.active);
            part("trayIcon").activated(0);
            tryVerify(() => window.active, 30000);
        }

        function test_tray_exit_quits() {
            closings.target = window;
            closings.clear();
            part("trayIcon").menu.items[0].triggered();
            compare(testLog.quits(), 1);
            compare(closings.count, 0);
            closings.target = null;
        }

        function test_menu_exit_closesWithoutQuitting() {
            closings.target = window;
            closings.clear();
            window.header.buttonExit();
            compare(closings.count, 1);
            compare(window.visible, false);
            compare(testLog.quits(), 0);
            closings.target = null;
        }

        function test_keyboard_tabReachesControlsInReadingOrder() {
            const order = ["Файл", "Инструменты", "Справка", "Панель управления", "Запуск"];
            startButton.forceActiveFocus(Qt.TabFocusReason);
            for (const text of order.concat(order)) {
                keyClick(Qt.Key_Tab);
                compare(window.activeFocusItem.text, text);
            }
            for (const name of ["buttonCP", "startButton"]) {
                part(name).forceActiveFocus(Qt.TabFocusReason);
                compare(part(name).visualFocus, true);
            }
            for (const text of order.slice(0, -1).reverse()) {
                keyClick(Qt.Key_Backtab);
                compare(window.activeFocusItem.text, text);
            }
        }

        function test_keyboard_pressesButtons_data() {
            return [{tag: "space", key: Qt.Key_Space}, {tag: "return", key: Qt.Key_Return},
                    {tag: "enter", key: Qt.Key_Enter}];
        }

        function test_keyboard_pressesButtons(row) {
            startButton.forceActiveFocus(Qt.TabFocusReason);
            keyClick(row.key);
            compare(startButton.checked, true);
            keyClick(row.key);
            compare(startButton.checked, false);
            part("buttonCP").forceActiveFocus(Qt.TabFocusReason);
            keyClick(row.key);
            tryCompare(part("controlPanel"), "visible", true);
        }

        function test_accessibleNames_russian_data() {
            return ["firstLcd", "secondLcd", "chanelID", "lineLogScale", "buttonCP", "startButton",
                    "numRectangle", "rangeArea", "statusLabel"].map(name => ({tag: name}));
        }

        function test_accessibleNames_russian(row) {
            const item = row.tag === "statusLabel" ? findChild(window.footer, row.tag) : part(row.tag);
            verify(/[А-Яа-я]/.test(item.Accessible.name), item.Accessible.name);
        }

        function test_accessibleValues_current() {
            mainBackEnd.firstCloudAlt("1234");
            verify(part("firstLcd").Accessible.name.includes("1234"));
            mainBackEnd.noDataError();
            compare(banner.Accessible.name, "Ошибка данных!");
            mainBackEnd.sendUnitYearNumber("7", "2019");
            verify(part("numRectangle").Accessible.name.includes("7"));
            verify(part("numRectangle").Accessible.name.includes("2019"));
        }

        name: "main"
        when: windowShown
    }
}
