// SPDX-License-Identifier: GPL-3.0-or-later
// Linked into the program when coverage is counted: _Exit would take the counts along.

extern "C" {

// The names are the toolchain's (gcov; ld --wrap).
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
