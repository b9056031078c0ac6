// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Item {
    id: root

    property string plateNumber: ""
    property string plateYear: ""

    height: 100
    width: 100

    // Wired as the main document does it.
    Component {
        id: windowComponent

        Number {
            uNumber: root.plateNumber
            uYear: root.plateYear

            onExitNumber: {
                mainBackEnd.saveUnitYearNumber(uNumber, uYear);
                close();
            }
        }
    }

    Connections {
        function onSendUnitYearNumber(unitNumber, unitYear) {
            root.plateNumber = unitNumber;
            root.plateYear = unitYear;
        }

        target: mainBackEnd
    }

    SignalSpy {
        id: exits

        signalName: "exitNumber"
    }

    TestCase {
        property Number panel: null

        function input(name) {
            return findChild(panel, name).input;
        }

        function show() {
            panel.visible = true;
            panel.requestActivate();
            tryVerify(() => panel.activeFocusItem !== null);
        }

        function type(text) {
            keyClick(Qt.Key_A, Qt.ControlModifier);
            keyClick(Qt.Key_Backspace);
            for (const letter of text)
                keyClick(letter);
        }

        name: "Number"
        when: windowShown

        function init() {
            testLog.forget("SETTINGS/_NUM");
            testLog.forget("SETTINGS/_YEAR");
            root.plateNumber = "";
            root.plateYear = "";
            testLog.clear();
            panel = createTemporaryObject(windowComponent, root);
            exits.target = panel;
            exits.clear();
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_window_asDesigned() {
            compare(panel.visible, false);
            compare(panel.width, 480);
            compare(panel.height, 320);
            compare(panel.modality, Qt.WindowModal);
            compare(panel.title, "Номер прибора");
            compare(panel.uNumber, "");
            compare(panel.uYear, "");
            verify(Qt.colorEqual(panel.color, "#efefef"));
        }

        // In the panel's own coordinates, which start 8 inside the window.
        function test_geometry_data() {
            return [
                {tag: "numberCaption", x: 82, y: 20, width: 300, height: 50},
                {tag: "numberEntry", x: 182, y: 70, width: 100, height: 50},
                {tag: "yearCaption", x: 82, y: 125, width: 300, height: 50},
                {tag: "yearEntry", x: 182, y: 175, width: 100, height: 50},
                {tag: "saveButton", x: 360, y: 273, width: 92, height: 23}
            ];
        }

        function test_geometry(row) {
            show();
            const item = findChild(panel, row.tag);
            const corner = item.mapToItem(null, 0, 0);
            compare(corner.x - 8, row.x);
            compare(corner.y - 8, row.y);
            compare(item.width, row.width);
            compare(item.height, row.height);
        }

        function test_look_ofEntriesAndCaptions() {
            for (const name of ["numberEntry", "yearEntry"]) {
                const entry = findChild(panel, name);
                verify(Qt.colorEqual(entry.color, "#eeeeee"));
                verify(Qt.colorEqual(entry.border.color, "black"));
                compare(entry.border.width, 1);
                compare(entry.radius, 5);
                compare(entry.input.font.pointSize, 14);
                compare(entry.input.horizontalAlignment, TextInput.AlignHCenter);
            }
            compare(findChild(panel, "numberCaption").text, "Введите номер прибора");
            compare(findChild(panel, "yearCaption").text, "Введите год выпуска прибора");
            compare(findChild(panel, "saveButton").text, "Записать");
            show();
            tryCompare(input("numberEntry"), "cursorVisible", true);
        }

        function test_inputs_startWithTheStoredValues() {
            mainBackEnd.saveUnitYearNumber("17", "2019");
            compare(input("numberEntry").text, "17");
            compare(input("yearEntry").text, "2019");
        }

        function test_firstRun_showsTheDefaultYear() {
            mainBackEnd.showUnitYearNumber();
            compare(panel.uYear, "2014");
            compare(input("yearEntry").text, "2014");
            compare(root.plateYear, "2014");
        }

        function test_edits_areCopied() {
            mainBackEnd.saveUnitYearNumber("17", "2019");
            show();
            type("42");
            compare(panel.uNumber, "42");
            compare(root.plateNumber, "17");
            keyClick(Qt.Key_Tab);
            type("2021");
            compare(panel.uYear, "2021");
            compare(panel.uNumber, "42");
            compare(input("numberEntry").text, "42");
        }

        function test_programmaticChange_isNotCopied() {
            root.plateNumber = "17";
            input("numberEntry").text = "99";
            compare(panel.uNumber, "17");
            input("yearEntry").text = "1999";
            compare(panel.uYear, "");
        }

        function test_save_storesBothAndCloses_data() {
            return [
                {tag: "digits", number: "42", year: "2021"},
                {tag: "empty number", number: "", year: "2021"},
                {tag: "not a number", number: "ab-7", year: "x"},
                {tag: "longer than the box", number: "12345678901234567890", year: "2020/2021"}
            ];
        }

        function test_save_storesBothAndCloses(row) {
            mainBackEnd.saveUnitYearNumber("17", "2019");
            show();
            type(row.number);
            keyClick(Qt.Key_Tab);
            type(row.year);
            mouseClick(findChild(panel, "saveButton"));
            compare(exits.count, 1);
            tryCompare(panel, "visible", false);
            verify(testLog.isStored("SETTINGS/_NUM"));
            compare(testLog.storedText("SETTINGS/_NUM"), row.number);
            compare(testLog.storedText("SETTINGS/_YEAR"), row.year);
            compare(root.plateNumber, row.number);
            compare(root.plateYear, row.year);
        }

        function test_close_afterEditing_savesNothing() {
            mainBackEnd.saveUnitYearNumber("17", "2019");
            show();
            type("42");
            panel.close();
            compare(exits.count, 0);
            compare(testLog.storedText("SETTINGS/_NUM"), "17");
            compare(root.plateNumber, "17");
            // What was typed stays, and the stored value no longer reaches this window.
            compare(panel.uNumber, "42");
            mainBackEnd.showUnitYearNumber();
            compare(panel.uNumber, "42");
        }

        function test_escape_afterEditing_savesNothing() {
            mainBackEnd.saveUnitYearNumber("17", "2019");
            show();
            type("42");
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
            compare(exits.count, 0);
            compare(testLog.storedText("SETTINGS/_NUM"), "17");
        }

        function test_keyboard_tabsInReadingOrder_data() {
            return [{tag: "space", key: Qt.Key_Space}, {tag: "return", key: Qt.Key_Return},
                    {tag: "enter", key: Qt.Key_Enter}];
        }

        function test_keyboard_tabsInReadingOrder(row) {
            show();
            verify(input("numberEntry").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(input("yearEntry").activeFocus);
            keyClick(Qt.Key_Tab);
            verify(findChild(panel, "saveButton").visualFocus);
            keyClick(row.key);
            compare(exits.count, 1);
        }

        function test_longText_staysInItsBox() {
            show();
            type("12345678901234567890");
            verify(input("numberEntry").contentWidth > 100);
            verify(input("numberEntry").clip);
            verify(input("numberEntry").width <= 100);
        }

        function test_accessibleNames() {
            compare(input("numberEntry").Accessible.name, "Номер прибора");
            compare(input("yearEntry").Accessible.name, "Год выпуска прибора");
            compare(findChild(panel, "saveButton").Accessible.name, "Записать");
        }
    }
}
