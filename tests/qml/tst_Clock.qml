// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest
import "qrc:/clocks"

Rectangle {
    id: root

    height: 260
    width: 420

    Component {
        id: clockComponent

        Clock {
            city: "Москва"
        }
    }

    Component {
        id: listComponent

        ListView {
            delegate: clockComponent
            model: 1
        }
    }

    QtObject {
        id: fakePanel

        property string calendarText: ""
    }

    TestCase {
        property Clock clock: null
        property date time

        function hand(name) {
            return findChild(clock, name);
        }

        function showTime(text) {
            time = new Date(text);
            clock.givenTime = time;
            clock.timeChanged();
        }

        // Around 0, so that 359.9 and 0 compare as neighbours.
        function angleBetween(a, b) {
            return ((a - b + 180) % 360 + 360) % 360 - 180;
        }

        function settle(name, angle) {
            tryVerify(() => Math.abs(angleBetween(hand(name).angle, angle)) < 0.001, 30000);
        }

        // Only the named parts are left to be seen.
        function leave(names) {
            for (const name of ["dayFace", "dayGlow", "nightFace", "hourHand", "minuteHand", "secondHand",
                                "cap", "cityLabel"])
                findChild(clock, name).opacity = names.includes(name) ? 1 : 0;
        }

        // Edges of what stands out from the white ground of the face's 200 x 200.
        function inkBox() {
            const picture = grabImage(root);
            const box = {left: 200, top: 200, right: -1, bottom: -1};
            for (let y = 0; y < 200; y++) {
                for (let x = 0; x < 200; x++) {
                    if (picture.red(x, y) > 250 && picture.green(x, y) > 250 && picture.blue(x, y) > 250)
                        continue;
                    box.left = Math.min(box.left, x);
                    box.top = Math.min(box.top, y);
                    box.right = Math.max(box.right, x);
                    box.bottom = Math.max(box.bottom, y);
                }
            }
            return box;
        }

        name: "Clock"
        when: windowShown

        function init() {
            testLog.clear();
            root.color = "white";
            fakePanel.calendarText = "";
            time = new Date("2026-11-21T10:20:30Z");
            clock = createTemporaryObject(clockComponent, root, {
                "givenTime": time,
                "panel": fakePanel,
                "shift": 3
            });
        }

        function cleanup() {
            compare(testLog.warnings(), []);
        }

        function test_defaults() {
            const fresh = createTemporaryObject(clockComponent, root);
            compare(fresh.internationalTime, true);
            compare(fresh.night, false);
            compare(fresh.dataStr, "");
            compare(fresh.width, 200);
            compare(fresh.height, 240);
            // Left to itself it shows the present.
            const before = new Date();
            fresh.timeChanged();
            const minute = fresh.minutes;
            const after = new Date();
            verify(minute === before.getUTCMinutes() || minute === after.getUTCMinutes());
        }

        function test_size_inList_fillsColumns_data() {
            return [
                {tag: "narrower than a clock", listWidth: 199, listHeight: 239, width: 200, height: 240},
                {tag: "one column exactly", listWidth: 200, listHeight: 240, width: 200, height: 240},
                {tag: "the panel's cell", listWidth: 292, listHeight: 284, width: 292, height: 284},
                {tag: "just below two", listWidth: 399, listHeight: 300, width: 399, height: 300},
                {tag: "two columns", listWidth: 410, listHeight: 240, width: 205, height: 240},
                {tag: "three columns", listWidth: 630, listHeight: 240, width: 210, height: 240}
            ];
        }

        function test_size_inList_fillsColumns(row) {
            const list = createTemporaryObject(listComponent, root, {
                "width": row.listWidth,
                "height": row.listHeight
            });
            const item = list.itemAtIndex(0);
            compare(item.width, row.width);
            compare(item.height, row.height);
        }

        function test_geometry_of_parts_data() {
            return [
                {tag: "hourHand", x: 92.5, y: 27, pivotX: 7.5, pivotY: 73, source: "hour.png"},
                {tag: "minuteHand", x: 93.5, y: 17, pivotX: 6.5, pivotY: 83, source: "minute.png"},
                {tag: "secondHand", x: 97.5, y: 20, pivotX: 2.5, pivotY: 80, source: "second.png"}
            ];
        }

        function test_geometry_of_parts(row) {
            const item = hand(row.tag);
            compare(item.x, row.x);
            compare(item.y, row.y);
            compare(item.pivot, Qt.vector3d(row.pivotX, row.pivotY, 0));
            verify(item.source.toString().endsWith(row.source));
            compare(item.status, Image.Ready);
            compare(item.swing.spring, 2);
            compare(item.swing.damping, 0.2);
            compare(item.swing.modulus, 360);
            // All three turn about the middle of the face.
            compare(item.x + row.pivotX, 100);
            compare(item.y + row.pivotY, 100);
        }

        function test_geometry_ofFacesCapAndLabel() {
            for (const name of ["dayFace", "nightFace", "dayGlow"]) {
                const face = findChild(clock, name);
                compare(Qt.size(face.width, face.height), Qt.size(200, 200));
                compare(face.mapToItem(clock, 0, 0), Qt.point(0, 0));
            }
            const cap = findChild(clock, "cap");
            compare(cap.x + cap.width / 2, 100);
            compare(cap.y + cap.height / 2, 100);
            const label = findChild(clock, "cityLabel");
            compare(label.text, "Москва");
            compare(label.y, 210);
            fuzzyCompare(label.x + label.width / 2, 100, 0.51);
            compare(label.font.pixelSize, 26);
            compare(label.font.bold, false);
            compare(label.style, Text.Raised);
            verify(Qt.colorEqual(label.color, "#fdfdfd"));
            verify(Qt.colorEqual(label.styleColor, "black"));
        }

        function test_dayGlow_isBrightAndBlurred() {
            const glow = findChild(clock, "dayGlow");
            compare(glow.source, findChild(clock, "dayFace"));
            compare(glow.brightness, 0.4);
            compare(glow.saturation, 0.2);
            compare(glow.blurEnabled, true);
            compare(glow.blurMax, 64);
            compare(glow.blur, 1);
            compare(glow.opacity, 1);
        }

        function gray(picture, x, y) {
            return (picture.red(x, y) + picture.green(x, y) + picture.blue(x, y)) / 3;
        }

        function darkestIn(picture, area) {
            let darkest = 255;
            for (let y = area.y; y < area.y + area.height; y++) {
                for (let x = area.x; x < area.x + area.width; x++)
                    darkest = Math.min(darkest, gray(picture, x, y));
            }
            return darkest;
        }

        function test_dayFace_betweenNumerals_isTransparent() {
            leave(["dayFace"]);
            root.color = "#40c080";
            const picture = grabImage(root);
            for (const place of [Qt.point(100, 60), Qt.point(60, 100), Qt.point(100, 130), Qt.point(120, 100)])
                verify(Qt.colorEqual(picture.pixel(place.x, place.y), root.color), place);
            verify(gray(picture, 100, 3) > 110, "no rim");
        }

        // The glow lies over the face in full strength.
        function test_day_underItsGlow_isEasyToRead() {
            leave(["dayFace", "dayGlow"]);
            root.color = "#eeeeee";
            const picture = grabImage(root);
            for (const numeral of [Qt.rect(85, 25, 30, 20), Qt.rect(158, 92, 16, 16), Qt.rect(92, 158, 16, 16)])
                verify(darkestIn(picture, numeral) < 70, numeral);
            verify(gray(picture, 100, 60) > 225);
            verify(picture.blue(206, 100) > 0xee + 2, "no glow outside the rim");
        }

        function test_cityLabel_standsOutByItsShadow() {
            const shadow = findChild(clock, "cityShadow");
            compare(shadow.source, findChild(clock, "cityLabel"));
            compare(shadow.shadowBlur, 0.8);
            verify(Qt.colorEqual(shadow.shadowColor, "black"));
            leave(["cityLabel"]);
            root.color = "#eeeeee";
            const label = findChild(clock, "cityLabel");
            const picture = grabImage(root);
            // At least a quarter of what lies within the letters' height is much darker than the panel.
            let dark = 0;
            let all = 0;
            for (let y = Math.ceil(label.y + 8); y < label.y + label.height - 8; y++) {
                for (let x = Math.ceil(label.x); x < label.x + label.width; x++) {
                    all++;
                    dark += gray(picture, x, y) < 160 ? 1 : 0;
                }
            }
            verify(dark > all / 4, dark + " of " + all);
        }

        function test_time_inZones_data() {
            const rows = [];
            for (const shift of [0, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13]) {
                for (const text of ["00:00:00", "00:59:59", "03:00:00", "05:00:00", "06:59:59", "07:00:00",
                                    "11:00:00", "12:30:15", "16:59:59", "17:30:00", "19:59:59", "20:00:00",
                                    "23:59:59"])
                    rows.push({tag: text + " +" + shift, text: text, shift: shift});
            }
            return rows;
        }

        function test_time_inZones(row) {
            const utc = row.text.split(":").map(Number);
            clock.shift = row.shift;
            showTime("2026-11-21T" + row.text + "Z");
            compare(clock.hours, utc[0] + row.shift);
            compare(clock.minutes, utc[1]);
            compare(clock.seconds, utc[2]);
            // Seen from the zone: until 7, in the zones from +7 on until as many o'clock as its shift.
            const local = (utc[0] + row.shift) % 24;
            const night = local >= 20 || local < Math.max(7, row.shift);
            compare(clock.night, night);
            compare(findChild(clock, "nightFace").visible, night);
            compare(findChild(clock, "dayFace").visible, !night);
            compare(findChild(clock, "dayGlow").visible, !night);
            compare(findChild(clock, "day").layer.enabled, true);
        }

        function test_night_data() {
            return [
                {tag: "Москва at 17:30 UTC", time: "17:30:00", shift: 3, hours: 20, night: true},
                {tag: "UTC at 17:30 UTC", time: "17:30:00", shift: 0, hours: 17, night: false},
                {tag: "Анадырь at 05:00 UTC", time: "05:00:00", shift: 13, hours: 18, night: false},
                {tag: "Анадырь at 07:00 UTC", time: "07:00:00", shift: 13, hours: 20, night: true},
                {tag: "Анадырь at 20:00 UTC is not reduced", time: "20:00:00", shift: 13, hours: 33, night: true},
                {tag: "Анадырь at 23:59 UTC, local 12:59", time: "23:59:59", shift: 13, hours: 36, night: true},
                {tag: "Анадырь at 00:00 UTC, local 13:00", time: "00:00:00", shift: 13, hours: 13, night: false},
                {tag: "Иркутск at 23:59 UTC, local 07:59", time: "23:59:00", shift: 8, hours: 31, night: true},
                {tag: "Иркутск at 00:00 UTC, local 08:00", time: "00:00:00", shift: 8, hours: 8, night: false},
                {tag: "UTC at 06:59", time: "06:59:59", shift: 0, hours: 6, night: true},
                {tag: "UTC at 07:00", time: "07:00:00", shift: 0, hours: 7, night: false},
                {tag: "UTC at 19:59", time: "19:59:59", shift: 0, hours: 19, night: false},
                {tag: "UTC at 20:00", time: "20:00:00", shift: 0, hours: 20, night: true}
            ];
        }

        function test_night(row) {
            clock.shift = row.shift;
            showTime("2026-11-21T" + row.time + "Z");
            compare(clock.hours, row.hours);
            compare(clock.night, row.night);
        }

        function test_shift_withFraction_givesMinutes() {
            clock.shift = 5.5;
            showTime("2026-11-21T10:10:00Z");
            compare(clock.hours, 15);
            compare(clock.minutes, 40);
        }

        function test_internationalTime_off_showsTheComputersTime() {
            clock.internationalTime = false;
            showTime("2026-11-21T21:15:42Z");
            compare(clock.hours, time.getHours());
            compare(clock.minutes, time.getMinutes());
            compare(clock.seconds, 42);
        }

        function test_tick_comesTenTimesASecond() {
            const timers = Array.from(clock.resources).filter(object => object.interval !== undefined);
            compare(timers.length, 1);
            compare(timers[0].interval, 100);
            verify(timers[0].repeat && timers[0].running && timers[0].triggeredOnStart);
        }

        function test_tick_followsTheTime() {
            clock.givenTime = new Date("2026-11-21T01:02:03Z");
            tryCompare(clock, "seconds", 3);
            compare(clock.minutes, 2);
            compare(clock.hours, 4);
            clock.givenTime = new Date("2026-11-21T01:02:04Z");
            tryCompare(clock, "seconds", 4);
        }

        // Qt 6.8 sets a narrow no-break space before the last word.
        function plain(text) {
            return text.replace(/\s/g, " ");
        }

        function test_calendarText_isRussianWords_data() {
            return [
                {tag: "saturday", time: "2026-11-21T10:00:00Z", text: "суббота, 21 ноября 2026 г."},
                {tag: "leap day", time: "2024-02-29T10:00:00Z", text: "четверг, 29 февраля 2024 г."},
                {tag: "new year", time: "2027-01-01T10:00:00Z", text: "пятница, 1 января 2027 г."}
            ];
        }

        function test_calendarText_isRussianWords(row) {
            showTime(row.time);
            compare(plain(fakePanel.calendarText), row.text);
            // Every tick writes it.
            fakePanel.calendarText = "";
            clock.timeChanged();
            compare(plain(fakePanel.calendarText), row.text);
        }

        function test_calendarText_isTheLocalDate() {
            clock.givenTime = new Date(2026, 10, 21, 23, 59, 59);
            clock.timeChanged();
            compare(plain(fakePanel.calendarText), "суббота, 21 ноября 2026 г.");
            clock.givenTime = new Date(2026, 10, 22, 0, 0, 0);
            clock.timeChanged();
            compare(plain(fakePanel.calendarText), "воскресенье, 22 ноября 2026 г.");
        }

        function test_angles_data() {
            return [
                {tag: "noon", time: "12:00:00", hour: 0, minute: 0, second: 0},
                {tag: "three", time: "03:00:00", hour: 90, minute: 0, second: 0},
                {tag: "half past six", time: "06:30:15", hour: 195, minute: 180, second: 90},
                {tag: "before midnight", time: "23:59:59", hour: 359.5, minute: 354, second: 354}
            ];
        }

        function test_angles(row) {
            clock.shift = 0;
            showTime("2026-11-21T" + row.time + "Z");
            settle("hourHand", row.hour);
            settle("minuteHand", row.minute);
            settle("secondHand", row.second);
        }

        function test_hourHand_beyondADay_pointsRight() {
            clock.shift = 13;
            showTime("2026-11-21T20:00:00Z");
            compare(clock.hours, 33);
            settle("hourHand", 270);
        }

        function test_hands_inSight_swing() {
            verify(clock.inSight);
            settle("secondHand", 180);
            let farthest = 0;
            const watch = () => farthest = Math.max(farthest, hand("secondHand").angle);
            hand("secondHand").angleChanged.connect(watch);
            showTime("2026-11-21T10:20:31Z");
            // The spring starts from where the hand stood and swings past its goal, then rests.
            fuzzyCompare(hand("secondHand").angle, 180, 1);
            settle("secondHand", 186);
            hand("secondHand").angleChanged.disconnect(watch);
            verify(farthest > 186.3, "swung to " + farthest);
        }

        function test_hands_atRest_stayAtRest() {
            showTime("2026-11-21T10:20:31Z");
            tryVerify(() => hand("secondHand").angle === 186, 30000);
            wait(100);
            compare(hand("secondHand").angle, 186);
        }

        function test_hands_pastTheTop_takeTheShortWay() {
            showTime("2026-11-21T10:20:59Z");
            settle("secondHand", 354);
            let strayed = false;
            const watch = () => {
                const angle = hand("secondHand").angle;
                strayed = strayed || (angle > 30 && angle < 330);
            };
            hand("secondHand").angleChanged.connect(watch);
            showTime("2026-11-21T10:21:00Z");
            settle("secondHand", 0);
            hand("secondHand").angleChanged.disconnect(watch);
            verify(!strayed);
        }

        function test_hands_outOfSight_areRightAtOnce() {
            const list = createTemporaryObject(listComponent, root, {
                "width": 200,
                "height": 240,
                "model": 3,
                "cacheBuffer": 3000,
                "orientation": ListView.Horizontal
            });
            tryVerify(() => list.itemAtIndex(2) !== null);
            const shown = list.itemAtIndex(0);
            const aside = list.itemAtIndex(2);
            verify(shown.inSight);
            verify(!aside.inSight);
            aside.givenTime = new Date("2026-11-21T03:45:50Z");
            aside.shift = 0;
            aside.timeChanged();
            compare(findChild(aside, "hourHand").angle, 3 * 30 + 45 * 0.5);
            compare(findChild(aside, "minuteHand").angle, 270);
            compare(findChild(aside, "secondHand").angle, 300);
            list.positionViewAtEnd();
            verify(aside.inSight);
            verify(!shown.inSight);
        }

        function test_picture_atNoon_allHandsStraightUp_data() {
            return [{tag: "hourHand"}, {tag: "minuteHand"}, {tag: "secondHand"}];
        }

        function test_picture_atNoon_allHandsStraightUp(row) {
            clock.shift = 0;
            showTime("2026-11-21T12:00:00Z");
            settle(row.tag, 0);
            leave([row.tag]);
            const box = inkBox();
            compare(box.left + box.right, 199);
            verify(box.right - box.left < 18, "leans: " + JSON.stringify(box));
            verify(box.top < 50, JSON.stringify(box));
        }

        function test_picture_atThree_hourHandStraightRight() {
            clock.shift = 0;
            showTime("2026-11-21T12:00:00Z");
            settle("hourHand", 0);
            leave(["hourHand"]);
            const up = inkBox();
            showTime("2026-11-21T15:00:00Z");
            settle("hourHand", 90);
            const right = inkBox();
            compare(right.top + right.bottom, 199);
            compare(right.right, 199 - up.top);
            compare(right.left, 199 - up.bottom);
            compare(right.bottom - right.top, up.right - up.left);
        }

        function test_accessible_tellsCityAndTime() {
            clock.shift = 13;
            showTime("2026-11-21T20:05:00Z");
            compare(clock.Accessible.name, "Часы: Москва");
            compare(clock.Accessible.description, "9:05");
        }
    }
}
