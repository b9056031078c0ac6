// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Layouts
import QtTest
import "qrc:/"

Item {
    id: root

    height: 100
    width: 100

    Component {
        id: windowComponent

        ClockCP {
            givenTime: testCase.time
        }
    }

    SignalSpy {
        id: connections

        signalName: "connectionButton"
    }

    SignalSpy {
        id: folders

        signalName: "openDataFolderButton"
    }

    SignalSpy {
        id: exits

        signalName: "exitCP"
    }

    TestCase {
        id: testCase

        property ClockCP panel: null
        property date time: new Date()

        readonly property var zoneTable: [["Калининград", 2], ["Москва", 3], ["Самара", 4], ["Екатеринбург", 5],
            ["Омск", 6], ["Красноярск", 7], ["Иркутск", 8], ["Якутск", 9], ["Владивосток", 10], ["Магадан", 11],
            ["Камчатка", 12], ["Анадырь", 13]]
        readonly property var lampTable: [
            {tag: "instrument", lamp: "orkConnectionLED", effect: "orkConnectionEffect", told: "connectionLED",
             kept: "boolConn", name: "Связь с прибором"},
            {tag: "server", lamp: "orkServerLED", effect: "orkServerEffect", told: "serverLED", kept: "boolServ",
             name: "Связь с сервером"},
            {tag: "data", lamp: "orkDataLED", effect: "orkDataEffect", told: "dataLED", kept: "boolData",
             name: "Запись данных"}]

        function part(name) {
            return findChild(panel, name);
        }

        function clocks() {
            const all = [];
            for (let i = 0; i < part("zones").count; i++)
                all.push(part("zones").itemAtIndex(i));
            all.push(part("utc").itemAtIndex(0));
            return all;
        }

        function show() {
            panel.visible = true;
            panel.requestActivate();
            tryVerify(() => panel.activeFocusItem !== null);
            mouseMove(panel.contentItem, 320, 600);
            tryVerify(() => clocks().every(clock => clock !== null));
        }

        // In the inner panel's coordinates, which start 8 inside the window.
        function place(item) {
            const corner = item.mapToItem(null, 0, 0);
            return Qt.rect(corner.x - 8, corner.y - 8, item.width, item.height);
        }

        function settled(hand, angle) {
            return Math.abs(((findChild(hand[0], hand[1]).angle - angle + 180) % 360 + 360) % 360 - 180) < 0.001;
        }

        name: "ClockCP"
        when: windowShown

        function init() {
            testLog.clear();
            time = new Date("2026-11-21T10:20:30Z");
            panel = createTemporaryObject(windowComponent, root);
            for (const spy of [connections, folders, exits]) {
                spy.target = panel;
                spy.clear();
            }
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_window_asDesigned() {
            compare(panel.visible, false);
            compare(panel.title, "Панель управления");
            verify(Qt.colorEqual(panel.color, "#efefef"));
            for (const name of ["width", "minimumWidth", "maximumWidth"])
                compare(panel[name], 640);
            for (const name of ["height", "minimumHeight", "maximumHeight"])
                compare(panel[name], 620);
            for (const name of ["boolConn", "boolServ", "boolData", "res"])
                compare(panel[name], false);
        }

        function test_geometry_data() {
            return [
                {tag: "serverButton", place: Qt.rect(35, 25, 150, 100)},
                {tag: "portButton", place: Qt.rect(237, 25, 150, 100)},
                {tag: "dataButton", place: Qt.rect(624 - 35 - 150, 25, 150, 100)},
                {tag: "orkConnectionLED", place: Qt.rect(90, 160, 40, 40)},
                {tag: "orkConnectionEffect", place: Qt.rect(90, 160, 40, 40)},
                {tag: "orkServerLED", place: Qt.rect(295, 160, 40, 40)},
                {tag: "orkServerEffect", place: Qt.rect(295, 160, 40, 40)},
                {tag: "orkDataLED", place: Qt.rect(624 - 90 - 40, 160, 40, 40)},
                {tag: "orkDataEffect", place: Qt.rect(624 - 90 - 40, 160, 40, 40)},
                {tag: "clockArea", place: Qt.rect(20, 220, 584, 604 - 220 - 100)}
            ];
        }

        function test_geometry(row) {
            show();
            compare(place(part(row.tag)), row.place);
        }

        function test_clockArea_carouselRightOfUtc() {
            show();
            const zones = place(part("zones"));
            const utc = place(part("utc"));
            compare(utc.x, 20);
            compare(utc.x + utc.width, zones.x);
            compare(zones.x + zones.width, 604);
            verify(utc.width <= 300);
            compare(zones.height, 284);
            compare(utc.height, 284);
            verify(part("clockArea").item.layer.enabled);
            for (const name of ["zones", "utc"]) {
                const list = part(name);
                compare(list.orientation, ListView.Horizontal);
                compare(list.snapMode, ListView.SnapOneItem);
                compare(list.boundsBehavior, Flickable.StopAtBounds);
                compare(list.highlightRangeMode, ListView.ApplyRange);
                compare(list.cacheBuffer, name === "zones" ? 3000 : 200);
            }
        }

        function test_clockArea_cells_widths_data() {
            return [
                {tag: "zones", minimum: 100, maximum: Infinity},
                {tag: "utc", minimum: 50, maximum: 300}
            ];
        }

        function test_clockArea_cells_widths(row) {
            const cell = part(row.tag).parent;
            compare(cell.parent, part("clockArea").item);
            compare(cell.Layout.minimumWidth, row.minimum);
            compare(cell.Layout.preferredWidth, 250);
            compare(cell.Layout.maximumWidth, row.maximum);
            compare(cell.Layout.fillWidth, true);
            compare(cell.Layout.fillHeight, true);
            verify(Qt.colorEqual(cell.color, "#eeeeee"));
        }

        function test_clocks_standInTableOrder() {
            show();
            compare(part("zones").count, 12);
            for (let i = 0; i < 12; i++) {
                compare(clocks()[i].city, testCase.zoneTable[i][0]);
                compare(clocks()[i].shift, testCase.zoneTable[i][1]);
            }
            compare(part("utc").count, 1);
            compare(clocks()[12].city, "UTC");
            compare(clocks()[12].shift, 0);
        }

        function test_clocks_allShowTheTime_data() {
            return [{tag: "05:00"}, {tag: "07:00"}, {tag: "12:00"}, {tag: "17:30"}, {tag: "20:00"}, {tag: "23:59"}];
        }

        function test_clocks_allShowTheTime(row) {
            show();
            const utc = row.tag.split(":").map(text => parseInt(text, 10));
            time = new Date("2026-11-21T" + row.tag + ":15Z");
            tryVerify(() => clocks().every(clock => clock.seconds === 15));
            for (const clock of clocks()) {
                compare(clock.hours, utc[0] + clock.shift);
                compare(clock.minutes, utc[1]);
                const local = (utc[0] + clock.shift) % 24;
                compare(clock.night, local >= 20 || local < Math.max(7, clock.shift));
            }
        }

        function test_clocks_tickWhileHidden() {
            compare(panel.visible, false);
            tryVerify(() => part("utc").itemAtIndex(0) !== null);
            time = new Date("2026-11-21T03:30:45Z");
            tryCompare(part("utc").itemAtIndex(0), "seconds", 45);
        }

        function test_hands_whenShownAgain_areRightAtOnce() {
            show();
            panel.close();
            time = new Date("2026-11-21T15:45:50Z");
            tryVerify(() => clocks().every(clock => clock.seconds === 50));
            for (const clock of clocks()) {
                verify(settled([clock, "hourHand"], clock.hours * 30 + 22.5));
                verify(settled([clock, "minuteHand"], 270));
                verify(settled([clock, "secondHand"], 300));
            }
            panel.visible = true;
            verify(settled([clocks()[0], "secondHand"], 300));
            verify(settled([clocks()[12], "hourHand"], 15 * 30 + 22.5));
        }

        // Qt 6.8 sets a narrow no-break space before the last word.
        function plain(text) {
            return text.replace(/\s/g, " ");
        }

        function test_calendar_isRussianWords() {
            show();
            tryVerify(() => plain(panel.calendarText) === "суббота, 21 ноября 2026 г.");
            const line = part("calendar");
            compare(line.text, panel.calendarText);
            compare(line.font.capitalization, Font.Capitalize);
            compare(line.font.pixelSize, 30);
            compare(line.font.bold, false);
            compare(line.style, Text.Raised);
            verify(Qt.colorEqual(line.color, "#fafafa"));
            verify(Qt.colorEqual(line.styleColor, "black"));
            const box = place(line);
            compare(box.y + box.height, 604 - 40);
            fuzzyCompare(box.x + box.width / 2, 312, 0.51);
            time = new Date("2026-11-22T10:00:00Z");
            tryVerify(() => plain(panel.calendarText) === "воскресенье, 22 ноября 2026 г.");
            // The longest date fits, too.
            panel.calendarText = "воскресенье, 30 сентября 2029 г.";
            verify(line.width < 624);
        }

        function test_arrows_tellTheEnds() {
            show();
            const left = part("leftArrow");
            const right = part("rightArrow");
            compare(left.opacity, 0);
            compare(right.opacity, 0.3);
            compare(left.rotation, -90);
            compare(right.rotation, 90);
            compare(left.status, Image.Ready);
            compare(left.fade.duration, 800);
            compare(right.fade.duration, 800);
            const zones = place(part("zones"));
            compare(place(left.parent).x, zones.x);
            compare(left.x, 10);
            compare(right.x + right.width, zones.width - 10);
            compare(left.y + left.height, zones.height);
            compare(right.y + right.height, zones.height);
            part("zones").positionViewAtIndex(5, ListView.Beginning);
            tryCompare(left, "opacity", 0.3);
            compare(right.opacity, 0.3);
            part("zones").positionViewAtEnd();
            const faded = right.opacity;
            verify(faded > 0.2, "no fade: " + faded);
            tryCompare(right, "opacity", 0);
            compare(left.opacity, 0.3);
        }

        function test_carousel_movesByArrows() {
            show();
            const zones = part("zones");
            const width = zones.itemAtIndex(0).width;
            mouseClick(part("rightArrow"));
            tryCompare(zones, "contentX", width);
            mouseClick(part("rightArrow"));
            tryCompare(zones, "contentX", 2 * width);
            mouseClick(part("leftArrow"));
            tryCompare(zones, "contentX", width);
        }

        function test_carousel_movesByDragging() {
            show();
            const zones = part("zones");
            const width = zones.itemAtIndex(0).width;
            mouseDrag(zones, width - 20, 100, -(width - 60), 0);
            tryCompare(zones, "contentX", width);
            tryCompare(zones, "currentIndex", 1);
            zones.forceActiveFocus();
            keyClick(Qt.Key_Right);
            tryCompare(zones, "contentX", 2 * width);
        }

        function test_carousel_keepsItsPlaceWhileClosed() {
            show();
            const zones = part("zones");
            mouseClick(part("rightArrow"));
            tryCompare(zones, "contentX", zones.itemAtIndex(0).width);
            panel.close();
            show();
            compare(zones.contentX, zones.itemAtIndex(0).width);
        }

        function test_keyboard_tabsInReadingOrder() {
            show();
            for (const name of ["serverButton", "dataButton", "zones"]) {
                keyClick(Qt.Key_Tab);
                verify(part(name).activeFocus, name);
            }
            verify(part("zonesFocus").visible);
            const width = part("zones").itemAtIndex(0).width;
            for (let i = 1; i < 12; i++) {
                keyClick(Qt.Key_Right);
                compare(part("zones").currentIndex, i);
            }
            tryCompare(part("zones"), "contentX", 11 * width);
            keyClick(Qt.Key_Left);
            tryCompare(part("zones"), "contentX", 10 * width);
            keyClick(Qt.Key_Tab);
            verify(!part("zonesFocus").visible);
        }

        function test_buttons_tellTheirSignals() {
            show();
            compare(part("serverButton").text, "Настройки\n подключения\n к прибору");
            compare(part("portButton").text, "Настройки\n подключения\n к серверу");
            compare(part("dataButton").text, "Открыть\n архив\n данных");
            for (const name of ["serverButton", "portButton", "dataButton"])
                compare(part(name).font.pointSize, 11);
            mouseClick(part("serverButton"));
            compare([connections.count, folders.count], [1, 0]);
            mouseClick(part("dataButton"));
            compare([connections.count, folders.count], [1, 1]);
            mouseClick(part("portButton"));
            compare([connections.count, folders.count, exits.count], [1, 1, 0]);
            compare(part("portButton").enabled, false);
        }

        function test_buttons_castShadows_data() {
            return [{tag: "serverButton"}, {tag: "portButton"}, {tag: "dataButton"}];
        }

        function test_buttons_castShadows(row) {
            const button = part(row.tag);
            const siblings = Array.from(button.parent.children);
            const shadow = siblings.find(child => child.source === button.background);
            verify(shadow);
            verify(shadow.z < button.z);
            compare(Qt.rect(shadow.x, shadow.y, shadow.width, shadow.height),
                    Qt.rect(button.x, button.y, button.width, button.height));
            compare(shadow.visible, true);
            fuzzyCompare(shadow.opacity, button.enabled ? 1 : 0.3, 0.001);
            compare(shadow.shadowBlur, 0.8);
            verify(Qt.colorEqual(shadow.shadowColor, "#eeeeee"));
            compare(shadow.shadowHorizontalOffset, 1);
            compare(shadow.shadowVerticalOffset, 1);
        }

        function test_escape_closesWithoutExit() {
            show();
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
            compare(exits.count, 0);
        }

        // They lie beside the frame with the buttons, not inside it.
        function test_escape_fromTheClocks_closes() {
            show();
            part("zones").forceActiveFocus();
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
        }

        function test_lamp_atFirst_isGrey_data() {
            return testCase.lampTable;
        }

        function test_lamp_atFirst_isGrey(row) {
            const lamp = part(row.lamp);
            const effect = part(row.effect);
            verify(Qt.colorEqual(lamp.color, "#6f6f6f"));
            verify(Qt.colorEqual(lamp.border.color, "#4f4f4f"));
            compare(lamp.border.width, 1);
            compare(lamp.radius, 20);
            compare(effect.source, lamp);
            compare(effect.shadowEnabled, true);
            compare(effect.shadowBlur, 0.8);
            verify(Qt.colorEqual(effect.shadowColor, "#eeeeee"));
            compare(effect.shadowHorizontalOffset, 1);
            compare(effect.shadowVerticalOffset, 1);
            fuzzyCompare(effect.saturation, 0.2, 0.001);
            compare(effect.blurMax, 30);
            compare(effect.blur, 0.5);
            compare(effect.blurEnabled, false);
            compare(effect.brightness, 0);
            compare(effect.Accessible.name, row.name);
            compare(effect.Accessible.description, "не горит");
        }

        function test_lamp_offBeforeOn_keepsItsEffect_data() {
            return testCase.lampTable;
        }

        function test_lamp_offBeforeOn_keepsItsEffect(row) {
            mainBackEnd[row.told](false);
            wait(600);
            verify(Qt.colorEqual(part(row.lamp).color, "#6f6f6f"));
            compare(part(row.effect).blurEnabled, false);
            compare(part(row.effect).brightness, 0);
            compare(panel[row.kept], false);
        }

        function test_lamp_onAndOff_data() {
            return testCase.lampTable;
        }

        function test_lamp_onAndOff(row) {
            const lamp = part(row.lamp);
            const effect = part(row.effect);
            compare(effect.fade.duration, 500);
            mainBackEnd[row.told](true);
            compare(panel[row.kept], true);
            verify(!Qt.colorEqual(lamp.color, "#44ea44"), "no fade");
            tryVerify(() => Qt.colorEqual(lamp.color, "#44ea44"));
            compare(effect.shadowEnabled, true);
            compare(effect.blurEnabled, true);
            fuzzyCompare(effect.brightness, 0.3, 0.001);
            compare(effect.Accessible.description, "горит");
            mainBackEnd[row.told](true);
            verify(!effect.fade.running, "a lit lamp is lit anew");
            for (const other of testCase.lampTable) {
                if (other !== row)
                    compare(panel[other.kept], other.kept === row.kept);
            }
            mainBackEnd[row.told](false);
            compare(panel[row.kept], false);
            tryVerify(() => Qt.colorEqual(lamp.color, "#6f6f6f"));
            // A lamp that was lit once stays soft and light.
            compare(effect.blurEnabled, true);
            fuzzyCompare(effect.brightness, 0.3, 0.001);
            compare(effect.Accessible.description, "не горит");
        }

        function test_accessibleNames() {
            show();
            compare(part("serverButton").Accessible.name, "Настройки подключения к прибору");
            compare(part("zones").Accessible.name, "Часовые пояса");
            compare(clocks()[1].Accessible.name, "Часы: Москва");
            compare(part("calendar").Accessible.name, panel.calendarText);
            compare(part("leftArrow").Accessible.name, "Предыдущие часы");
            compare(part("rightArrow").Accessible.name, "Следующие часы");
        }
    }
}
