// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/"

Item {
    id: root

    height: 200
    width: 600

    Component {
        id: menuComponent

        MyMenu {
            property var told: []

            width: root.width

            onButtonAbout: told.push("buttonAbout")
            onButtonExit: told.push("buttonExit")
            onButtonNumber: told.push("buttonNumber")
            onButtonOpenFolder: told.push("buttonOpenFolder")
            onButtonSettings: told.push("buttonSettings")
        }
    }

    TestCase {
        property MyMenu menuBar: null

        function finishCallsForLater() {
            let done = false;
            Qt.callLater(() => done = true);
            tryVerify(() => done);
        }

        function openMenu(index) {
            mouseClick(menuBar.itemAt(index));
            finishCallsForLater();
            tryCompare(menuBar.menuAt(index), "opened", true);
            return menuBar.menuAt(index);
        }

        name: "MyMenu"
        when: windowShown

        function init() {
            testLog.clear();
            mouseMove(root, 590, 190);
            menuBar = createTemporaryObject(menuComponent, root);
        }

        function cleanup() {
            for (let i = 0; i < menuBar.count; i++)
                menuBar.menuAt(i).close();
            compare(testLog.warnings(), []);
        }

        function test_bar_asDesigned() {
            compare(menuBar.count, 3);
            compare(menuBar.menuAt(0).title, "Файл");
            compare(menuBar.menuAt(1).title, "Инструменты");
            compare(menuBar.menuAt(2).title, "Справка");
            const stops = menuBar.background.gradient.stops;
            compare(stops.length, 2);
            verify(Qt.colorEqual(stops[0].color, "#dddddd"));
            verify(Qt.colorEqual(stops[1].color, "#c8c8c8"));
            for (let i = 0; i < 3; i++) {
                const item = menuBar.itemAt(i);
                compare(item.height, 22);
                compare(item.background.implicitWidth, 20);
                compare(item.background.implicitHeight, 20);
                compare(item.background.radius, 3);
                compare(item.contentItem.font.family, fontPalantino.font.family);
                verify(Qt.colorEqual(item.contentItem.color, "#252525"));
                verify(Qt.colorEqual(item.background.color, "transparent"));
                verify(!item.contentItem.truncated);
            }
        }

        function test_barItem_disabled_isFaint() {
            const item = menuBar.itemAt(1);
            compare(item.contentItem.opacity, 1);
            item.enabled = false;
            compare(item.contentItem.opacity, 0.3);
        }

        function test_barItem_opened_isHighlighted() {
            openMenu(0);
            const item = menuBar.itemAt(0);
            verify(item.highlighted);
            verify(Qt.colorEqual(item.contentItem.color, "#ffffff"));
            verify(Qt.colorEqual(item.background.color, "#5E5F60"));
        }

        function test_menu_sizes_data() {
            return [
                {tag: "Файл", index: 0, count: 3, width: 220, entryWidth: 220, indicator: 22, arrow: 15, box: 16,
                 mark: 8, radius: 4, height: 49},
                {tag: "Инструменты", index: 1, count: 2, width: 200, entryWidth: 200, indicator: 30, arrow: 30,
                 box: 26, mark: 14, radius: 3, height: 46},
                {tag: "Справка", index: 2, count: 1, width: 200, entryWidth: 200, indicator: 30, arrow: 30,
                 box: 26, mark: 14, radius: 3, height: 24}
            ];
        }

        function test_menu_sizes(row) {
            const menu = openMenu(row.index);
            compare(menu.title, row.tag);
            compare(menu.count, row.count);
            compare(menu.background.implicitWidth, row.width);
            compare(menu.background.implicitHeight, 22);
            compare(menu.background.height, row.height);
            // The fixed height fits exactly the entries.
            compare(menu.height, row.height);
            compare(menu.width, row.width);
            verify(Qt.colorEqual(menu.background.color, "#eeeeee"));
            verify(Qt.colorEqual(menu.background.border.color, "#cccccc"));
            compare(menu.background.border.width, 1);
            compare(menu.background.radius, 3);
            for (let i = 0; i < menu.count; i++) {
                const entry = menu.itemAt(i);
                if (entry.text === undefined)
                    continue;
                compare(entry.height, 22);
                compare(entry.implicitHeight, 22);
                compare(entry.implicitWidth, 200);
                compare(entry.background.width, row.entryWidth);
                compare(entry.background.radius, 2);
                compare(entry.indicator.width, row.indicator);
                compare(entry.arrow.width, row.arrow);
                compare(entry.arrow.visible, false);
                const box = entry.indicator.children[0];
                compare(box.visible, false);
                compare(box.width, row.box);
                compare(box.radius, row.radius);
                compare(box.children[0].width, row.mark);
                compare(entry.contentItem.font.family, fontPalantino.font.family);
                compare(entry.contentItem.horizontalAlignment, Text.AlignLeft);
                compare(entry.contentItem.elide, Text.ElideRight);
                verify(!entry.contentItem.truncated, entry.text);
            }
        }

        function test_separator_isAThinLine() {
            const line = openMenu(0).itemAt(1).contentItem;
            compare(line.implicitWidth, 200);
            compare(line.implicitHeight, 1);
            compare(line.height, 1);
            verify(Qt.colorEqual(line.color, "#1E000000"));
        }

        function test_entry_colors_followHighlight() {
            const menu = openMenu(0);
            const entry = menu.itemAt(0);
            verify(Qt.colorEqual(entry.contentItem.color, "#252525"));
            verify(Qt.colorEqual(entry.background.color, "transparent"));
            mouseMove(entry, 50, 10);
            tryCompare(entry, "highlighted", true);
            verify(Qt.colorEqual(entry.contentItem.color, "#ffffff"));
            verify(Qt.colorEqual(entry.background.color, "#5E5F60"));
            entry.enabled = false;
            compare(entry.contentItem.opacity, 0.3);
        }

        function test_entries_tellOneSignalEach_data() {
            return [
                {tag: "Открыть папку с данными", menu: 0, entry: 0, told: "buttonOpenFolder"},
                {tag: "Выход", menu: 0, entry: 2, told: "buttonExit"},
                {tag: "Параметры", menu: 1, entry: 0, told: "buttonSettings"},
                {tag: "Номер прибора", menu: 1, entry: 1, told: "buttonNumber"},
                {tag: "О нас", menu: 2, entry: 0, told: "buttonAbout"}
            ];
        }

        function test_entries_tellOneSignalEach(row) {
            const menu = openMenu(row.menu);
            const entry = menu.itemAt(row.entry);
            compare(entry.text, row.tag);
            mouseClick(entry);
            compare(menuBar.told, [row.told]);
            tryCompare(menu, "visible", false);
        }

        // The pointer stays where it has opened the menu.
        function openAndEscape() {
            const item = menuBar.itemAt(1);
            mouseMove(item, 20, 10);
            tryCompare(item, "hovered", true);
            const menu = openMenu(1);
            keyClick(Qt.Key_Escape);
            tryCompare(menu, "visible", false);
            verify(item.hovered);
            return menu;
        }

        function test_menu_closedByEscape_opensAtTheNextClick() {
            for (let round = 0; round < 3; round++)
                openAndEscape();
        }

        function test_menu_closedByEscape_opensAtTheNextKey_data() {
            return test_keyboard_enterOpensTheMenu_data();
        }

        function test_menu_closedByEscape_opensAtTheNextKey(row) {
            const menu = openAndEscape();
            menuBar.itemAt(1).forceActiveFocus(Qt.TabFocusReason);
            keyClick(row.key);
            tryCompare(menu, "opened", true);
        }

        function test_menu_clickedAgain_closes() {
            mouseMove(menuBar.itemAt(1), 20, 10);
            const menu = openMenu(1);
            mouseClick(menuBar.itemAt(1));
            finishCallsForLater();
            tryCompare(menu, "visible", false);
            openMenu(1);
        }

        function test_keyboard_reachesEveryEntry_data() {
            return test_entries_tellOneSignalEach_data();
        }

        function test_keyboard_reachesEveryEntry(row) {
            menuBar.itemAt(0).forceActiveFocus(Qt.TabFocusReason);
            compare(menuBar.itemAt(0).background.border.width, 1);
            for (let i = 0; i < row.menu; i++)
                keyClick(Qt.Key_Tab);
            verify(menuBar.itemAt(row.menu).activeFocus);
            keyClick(Qt.Key_Space);
            const menu = menuBar.menuAt(row.menu);
            tryCompare(menu, "opened", true);
            for (let i = 0; i < 3 && !menu.itemAt(row.entry).highlighted; i++)
                keyClick(Qt.Key_Down);
            verify(menu.itemAt(row.entry).highlighted);
            keyClick(Qt.Key_Return);
            compare(menuBar.told, [row.told]);
            tryCompare(menu, "visible", false);
        }

        function test_keyboard_enterOpensTheMenu_data() {
            return [{tag: "return", key: Qt.Key_Return}, {tag: "enter", key: Qt.Key_Enter},
                    {tag: "down", key: Qt.Key_Down}];
        }

        function test_keyboard_enterOpensTheMenu(row) {
            menuBar.itemAt(1).forceActiveFocus(Qt.TabFocusReason);
            keyClick(row.key);
            tryCompare(menuBar.menuAt(1), "opened", true);
            keyClick(Qt.Key_Escape);
            tryCompare(menuBar.menuAt(1), "visible", false);
            compare(menuBar.told, []);
        }
    }

    FontLoader {
        id: fontPalantino

        source: "qrc:/settings/Fonts/Palantino/pala.ttf"
    }
}
