// SPDX-License-Identifier: GPL-3.0-or-later
// Linked into the program for coverage measurements: _Exit() alone would discard the counters.

extern "C" {

// The names are defined by gcov and by ld --wrap.
// NOLINTBEGIN(bugprone-reserved-identifier)
void __gcov_dump();
[[noreturn]] void __real__Exit(int status);

[[noreturn]] void __wrap__Exit(int status)
{
    __gcov_dump();
    __real__Exit(status);
}
// NOLINTEND(bugprone-reserved-identifier)

} // extern "C"
