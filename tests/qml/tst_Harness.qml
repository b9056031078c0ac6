// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick
import QtTest

// The other tests rely on the log that is kept here: if it went deaf, they would never fail.
TestCase {
    name: "Harness"

    function init() {
        testLog.clear();
    }

    function test_warning_isKept() {
        console.warn("an expected warning");
        compare(testLog.warnings(), ["an expected warning"]);
        testLog.clear();
        compare(testLog.warnings(), []);
    }

    function test_line_isKept() {
        console.log("a line");
        compare(testLog.lines(), ["a line"]);
        compare(testLog.warnings(), []);
    }
}
