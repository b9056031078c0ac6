// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// Called by libFuzzer with each input. Returns if no error was found.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz {

// Aborts the process on an error, so that the fuzzer stores the input.
inline void check(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "Check failed: %s\n", rule);
        std::abort();
    }
}

// Returns a copy on the heap, so that the address sanitizer detects an access past its end.
inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

} // namespace fuzz
