// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtQuick.Controls.Basic
import QtTest
import "qrc:/"

Item {
    id: root

    height: 100
    width: 100

    // Wired as the main document does it, but for the reading of the file.
    Component {
        id: windowComponent

        Settings {
            onExitSettings: {
                mainBackEnd.saveComPortNumber(portNum);
                close();
            }
        }
    }

    Component {
        id: otherComponent

        Window {
            height: 100
            visible: true
            width: 100
        }
    }

    SignalSpy {
        id: exits

        signalName: "exitSettings"
    }

    SignalSpy {
        id: reads

        signalName: "readFile"
    }

    SignalSpy {
        id: choices

        signalName: "setComNum"
    }

    TestCase {
        property Settings panel: null
        readonly property string factoryText: "Настройки для программы \"Терминал ОРК-2\"\n\nBaudRate = 9600\n"
                                              + "Parity = 0\nPathToLog = \"~/ORK2/Log\"\nPathToData = \"~/ORK2/Data\""

        function part(name) {
            return findChild(panel, name);
        }

        function box() {
            return part("portBox");
        }

        function list() {
            return box().popup.contentItem;
        }

        function show() {
            panel.visible = true;
            panel.requestActivate();
            tryVerify(() => panel.activeFocusItem !== null);
            // Away from whatever stood under the pointer.
            mouseMove(panel.contentItem, 470, 300);
        }

        function openList() {
            mouseClick(box());
            tryCompare(box().popup, "opened", true);
        }

        function choose(index) {
            openList();
            tryVerify(() => list().itemAtIndex(index) !== null);
            mouseClick(list().itemAtIndex(index));
            tryCompare(box().popup, "visible", false);
        }

        function addPorts(names) {
            for (const name of names)
                panel.dataCpp = name;
        }

        function entries() {
            const names = [];
            for (let i = 0; i < box().model.count; i++)
                names.push(box().model.get(i).textInput);
            return names;
        }

        // In the inner panel's coordinates, which start 8 inside the window.
        function place(item) {
            const corner = item.mapToItem(null, 0, 0);
            return Qt.rect(corner.x - 8, corner.y - 8, item.width, item.height);
        }

        name: "Settings"
        when: windowShown

        function init() {
            testLog.forget("SETTINGS/_COM");
            testLog.clear();
            panel = createTemporaryObject(windowComponent, root);
            for (const spy of [exits, reads, choices]) {
                spy.target = panel;
                spy.clear();
            }
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_window_asDesigned() {
            compare(panel.visible, false);
            compare(panel.width, 480);
            compare(panel.height, 420);
            compare(panel.modality, Qt.WindowModal);
            compare(panel.title, "Параметры");
            verify(Qt.colorEqual(panel.color, "#efefef"));
        }

        function test_properties_atFirst_areDashes() {
            for (const name of ["dataCpp", "dataFile", "portNum", "currentPortNum"])
                compare(panel[name], "----");
            show();
            compare(part("fileText").text, "----");
            compare(part("portText").text, "----");
            compare(box().count, 0);
        }

        function test_geometry() {
            show();
            const file = place(part("fileText"));
            compare(file.y, 10);
            fuzzyCompare(file.x + file.width / 2, 232, 1);
            const port = place(box());
            compare(port.x, file.x);
            compare(port.y, file.y + file.height + 20);
            compare(port.width, 120);
            compare(port.height, 40);
            const label = place(part("portLabel"));
            compare(part("portLabel").text, "Port:  ");
            compare(label.x + label.width, file.x);
            const button = place(part("exitButton"));
            compare(part("exitButton").text, "Выход");
            compare(button, Qt.rect(464 - 12 - 95, 404 - 8 - 21, 95, 21));
            const arrow = place(part("portArrow"));
            compare(Qt.size(arrow.width, arrow.height), Qt.size(12, 8));
            compare(arrow.y + arrow.height / 2, port.y + port.height / 2);
            for (const name of ["fileText", "portLabel", "portText"])
                compare(part(name).font.pointSize, 14);
        }

        function test_geometry_withFactoryText_labelStaysInside() {
            panel.dataFile = factoryText;
            show();
            compare(part("fileText").text, factoryText);
            const label = place(part("portLabel"));
            verify(label.x >= 0, "label at " + label.x);
            compare(label.x + label.width, place(box()).x);
            verify(place(box()).y + 40 + 160 < 404);
        }

        function test_fileText_veryLong_isElidedInsideThePanel() {
            const longLine = "x".repeat(200);
            panel.dataFile = longLine + "\nParity = 0\n" + longLine;
            show();
            verify(part("fileBox").width > 480);
            const file = part("fileText");
            compare(file.lineCount, 3);
            const lines = file.text.split("\n");
            compare(lines[1], "Parity = 0");
            for (const line of [lines[0], lines[2]])
                verify(/^x{20,}\u2026$/.test(line), line);
            verify(place(file).x >= 0);
            verify(place(file).x + file.width <= 464);
            verify(place(box()).x > 0);
            compare(file.Accessible.name, "Файл настроек: " + panel.dataFile);
            const tip = findChild(file, "fullText");
            compare(tip.visible, false);
            mouseMove(file, 50, 10);
            tryCompare(tip, "visible", true);
            compare(tip.text, panel.dataFile);
            verify(tip.width < 480);
        }

        function test_fileText_ordinary_isShownWhole() {
            panel.dataFile = factoryText;
            show();
            const file = part("fileText");
            compare(file.text, factoryText);
            compare(file.x, 0);
            compare(Math.ceil(file.width), part("fileBox").width);
            mouseMove(file, 50, 10);
            verify(!findChild(file, "fullText").shortened);
        }

        function test_outsideTexts_areShownLetterByLetter() {
            panel.dataFile = "<b>a</b>\n<img src=\"http://localhost:9/a.png\">";
            show();
            compare(part("fileText").text, panel.dataFile);
            compare(part("fileText").lineCount, 2);
            compare(part("fileText").textFormat, Text.PlainText);
            compare(findChild(part("fileText"), "fullText").contentItem.textFormat, Text.PlainText);
            panel.currentPortNum = "<b>a</b>";
            compare(part("portText").text, "<b>a</b>");
            compare(part("portText").textFormat, Text.PlainText);
            addPorts(["<b>b</b>"]);
            openList();
            tryVerify(() => list().itemAtIndex(0) !== null);
            compare(list().itemAtIndex(0).contentItem.textFormat, Text.PlainText);
            keyClick(Qt.Key_Escape);
        }

        function test_closedList_keys_chooseNothing_data() {
            return [{tag: "Home", key: Qt.Key_Home}, {tag: "End", key: Qt.Key_End}, {tag: "letter", key: "c"},
                    {tag: "letter with Shift", key: "C"}, {tag: "digit", key: "1"}];
        }

        function test_closedList_keys_chooseNothing(row) {
            addPorts(["COM1", "1COM"]);
            panel.currentPortNum = "COM9";
            show();
            keyClick(Qt.Key_Tab);
            verify(box().visualFocus);
            keyClick(row.key);
            compare(box().currentIndex, -1);
            keyClick(Qt.Key_Space);
            tryCompare(box().popup, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(box().popup, "visible", false);
            compare(panel.portNum, "COM9");
            compare(panel.currentPortNum, "COM9");
            compare(part("portText").text, "COM9");
        }

        function test_closedList_wheel_choosesNothing() {
            addPorts(["COM1", "COM3"]);
            panel.currentPortNum = "COM9";
            show();
            mouseWheel(box(), 30, 20, 0, -120);
            mouseWheel(box(), 30, 20, 0, 120);
            compare(box().currentIndex, -1);
        }

        function test_openList_endKey_goesToTheLastPort() {
            addPorts(["COM1", "COM2", "COM3"]);
            show();
            openList();
            keyClick(Qt.Key_End);
            compare(box().highlightedIndex, 2);
            keyClick(Qt.Key_Return);
            tryCompare(box().popup, "visible", false);
            compare(panel.portNum, "COM3");
        }

        function test_readFile_onEachChangeOfActivity() {
            compare(reads.count, 0);
            for (let opened = 0; opened < 2; opened++) {
                show();
                tryCompare(reads, "count", 2 * opened + 1);
                panel.close();
                tryCompare(reads, "count", 2 * opened + 2);
                wait(100);
                compare(reads.count, 2 * opened + 2);
            }
        }

        function test_readFile_onLossOfActivity_withoutClosing() {
            show();
            tryCompare(reads, "count", 1);
            const other = createTemporaryObject(otherComponent, null);
            other.requestActivate();
            tryVerify(() => !panel.active);
            tryCompare(reads, "count", 2);
            compare(panel.visible, true);
            panel.requestActivate();
            tryCompare(reads, "count", 3);
            other.close();
        }

        function test_dataCpp_twoPorts_accumulate() {
            addPorts(["COM1", "COM3"]);
            compare(entries(), ["COM1", "COM3"]);
            addPorts(["COM1", "COM3"]);
            compare(entries(), ["COM1", "COM3", "COM1", "COM3"]);
        }

        function test_dataCpp_onePort_isEnteredOnce() {
            addPorts(["COM1"]);
            addPorts(["COM1"]);
            compare(entries(), ["COM1"]);
        }

        function test_currentPortNum_withNothingChosen_isShownAndKept() {
            addPorts(["COM1", "COM3"]);
            panel.currentPortNum = "COM3";
            compare(part("portText").text, "COM3");
            compare(panel.portNum, "COM3");
            compare(choices.count, 1);
            compare(panel.currentPortNum, "COM3");
        }

        function test_list_openedAndClosed_changesNothing() {
            addPorts(["COM1", "COM3"]);
            panel.currentPortNum = "COM3";
            show();
            openList();
            compare(part("portText").text, "COM3");
            keyClick(Qt.Key_Escape);
            tryCompare(box().popup, "visible", false);
            compare(panel.visible, true);
            compare(panel.portNum, "COM3");
            compare(panel.currentPortNum, "COM3");
            compare(choices.count, 1);
        }

        function test_choice_byMouse_becomesThePort() {
            addPorts(["COM1", "COM3"]);
            show();
            choose(1);
            compare(panel.portNum, "COM3");
            compare(panel.currentPortNum, "COM3");
            compare(part("portText").text, "COM3");
            choose(0);
            compare(panel.portNum, "COM1");
            compare(panel.currentPortNum, "COM1");
            verify(choices.count >= 2);
        }

        function test_currentPortNum_afterAChoice_yieldsToTheBox() {
            addPorts(["COM1", "COM3"]);
            show();
            choose(0);
            panel.currentPortNum = "COM9";
            compare(panel.portNum, "COM1");
            compare(panel.currentPortNum, "COM1");
            compare(part("portText").text, "COM1");
        }

        function test_exitButton_savesTheChoice() {
            addPorts(["COM1", "COM3"]);
            show();
            choose(1);
            mouseClick(part("exitButton"));
            compare(exits.count, 1);
            tryCompare(panel, "visible", false);
            compare(testLog.storedText("SETTINGS/_COM"), "COM3");
        }

        function test_exitButton_withNothingChosen_keepsTheStoredPort() {
            testLog.store("SETTINGS/_COM", "COM3");
            addPorts(["COM1", "COM3"]);
            panel.currentPortNum = "COM3";
            show();
            mouseClick(part("exitButton"));
            compare(testLog.storedText("SETTINGS/_COM"), "COM3");
        }

        function test_close_byFrame_doesNotSave() {
            testLog.store("SETTINGS/_COM", "COM3");
            addPorts(["COM1", "COM3"]);
            show();
            choose(0);
            panel.close();
            compare(exits.count, 0);
            compare(testLog.storedText("SETTINGS/_COM"), "COM3");
        }

        function test_escape_doesNotSave() {
            show();
            keyClick(Qt.Key_Escape);
            tryCompare(panel, "visible", false);
            compare(exits.count, 0);
            verify(!testLog.isStored("SETTINGS/_COM"));
        }

        function test_accepted_takesTheChosenPort() {
            panel.portNum = "COM7";
            box().accepted();
            compare(panel.currentPortNum, "COM7");
        }

        function test_colors_ofTheBox() {
            show();
            verify(Qt.colorEqual(box().background.color, "transparent"));
            verify(Qt.colorEqual(box().background.border.color, "black"));
            compare(box().background.border.width, 1);
            compare(box().background.radius, 4);
            compare(box().background.implicitWidth, 120);
            compare(box().background.implicitHeight, 40);
            verify(Qt.colorEqual(part("portText").color, "black"));
            compare(part("portText").elide, Text.ElideRight);
            mouseMove(box(), 30, 20);
            tryCompare(box(), "hovered", true);
            verify(Qt.colorEqual(box().background.color, "#5E5F60"));
            verify(Qt.colorEqual(part("portText").color, "white"));
            mousePress(box(), 30, 20);
            verify(Qt.colorEqual(box().background.border.color, "#5E5F60"));
            mouseRelease(box(), 30, 20);
        }

        function test_arrow_isPaintedInTheStatesColor_data() {
            return [{tag: "at rest", hover: false, pressed: false, color: "#5e5f60"},
                    {tag: "hovered", hover: true, pressed: false, color: "#fafafa"},
                    {tag: "pressed", hover: false, pressed: true, color: "black"},
                    {tag: "hovered and pressed", hover: true, pressed: true, color: "#fafafa"}];
        }

        function test_arrow_isPaintedInTheStatesColor(row) {
            show();
            if (row.hover) {
                mouseMove(box(), 30, 20);
                tryCompare(box(), "hovered", true);
            }
            const middle = part("portArrow").mapToItem(null, 6, 2);
            if (row.pressed) {
                box().forceActiveFocus(Qt.TabFocusReason);
                keyPress(Qt.Key_Space);
                verify(box().pressed);
            }
            tryVerify(() => Qt.colorEqual(grabImage(panel.contentItem).pixel(middle.x, middle.y), row.color));
            if (row.pressed)
                keyRelease(Qt.Key_Space);
        }

        function test_popup_asDesigned() {
            addPorts(["COM1", "COM2", "COM3", "COM4", "COM5", "COM6", "COM7", "COM8"]);
            show();
            openList();
            const popup = box().popup;
            compare(popup.y, box().height - 1);
            compare(popup.width, box().width);
            compare(popup.padding, 1);
            compare(popup.height, 160);
            compare(list().clip, true);
            verify(Qt.colorEqual(popup.background.border.color, "#5E5F60"));
            verify(Qt.colorEqual(popup.background.color, "transparent"));
            compare(popup.background.radius, 4);
            verify(list().ScrollIndicator.vertical !== null);
            keyClick(Qt.Key_Escape);
        }

        function test_popup_withFewPorts_isAsHighAsTheList() {
            addPorts(["COM1", "COM2"]);
            show();
            openList();
            compare(box().popup.height, list().contentHeight + 2);
            verify(box().popup.height < 160);
            keyClick(Qt.Key_Escape);
        }

        function test_rows_colorsFollowThePointer() {
            addPorts(["COM1", "COM2"]);
            show();
            openList();
            tryVerify(() => list().itemAtIndex(1) !== null);
            const row = list().itemAtIndex(1);
            compare(row.contentItem.text, "COM2");
            verify(Qt.colorEqual(row.contentItem.color, "black"));
            verify(Qt.colorEqual(row.background.color, "transparent"));
            mouseMove(row, 30, 10);
            tryCompare(row, "hovered", true);
            verify(Qt.colorEqual(row.contentItem.color, "white"));
            verify(Qt.colorEqual(row.background.color, "#5E5F60"));
            compare(row.highlighted, true);
            mouseMove(list().itemAtIndex(0), 30, 10);
            tryCompare(row, "highlighted", false);
            keyClick(Qt.Key_Escape);
        }

        function test_keyboard_choosesAndSaves() {
            addPorts(["COM1", "COM3"]);
            show();
            keyClick(Qt.Key_Tab);
            verify(box().visualFocus);
            compare(box().background.border.width, 2);
            keyClick(Qt.Key_Down);
            tryCompare(box().popup, "opened", true);
            for (let i = 0; i < 2 && box().highlightedIndex < 1; i++)
                keyClick(Qt.Key_Down);
            tryVerify(() => list().itemAtIndex(1) && list().itemAtIndex(1).highlighted);
            compare(list().itemAtIndex(1).background.border.width, 1);
            keyClick(Qt.Key_Return);
            tryCompare(box().popup, "visible", false);
            compare(panel.portNum, "COM3");
            keyClick(Qt.Key_Tab);
            verify(part("exitButton").visualFocus);
            keyClick(Qt.Key_Space);
            compare(exits.count, 1);
            compare(testLog.storedText("SETTINGS/_COM"), "COM3");
        }

        function test_keyboard_spaceOpensTheList() {
            addPorts(["COM1", "COM3"]);
            show();
            keyClick(Qt.Key_Tab);
            keyClick(Qt.Key_Space);
            tryCompare(box().popup, "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(box().popup, "visible", false);
            compare(panel.visible, true);
        }

        function test_accessibleNames() {
            compare(box().Accessible.name, "Порт");
            compare(part("exitButton").Accessible.name, "Выход");
            panel.dataFile = "Parity = 0";
            compare(part("fileText").Accessible.name, "Файл настроек: Parity = 0");
        }
    }
}
