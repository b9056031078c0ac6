// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What libFuzzer calls with each input. A target that returns has no finding.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace fuzz {

// Ends the process, which is how a fuzzer takes note of an input.
inline void check(bool holds, const char *rule)
{
    if (!holds) {
        std::fprintf(stderr, "Does not hold: %s\n", rule);
        std::abort();
    }
}

// A copy of its own on the heap, so that the address sanitizer sees the first byte past its end.
inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return {reinterpret_cast<const char *>(data), static_cast<qsizetype>(size)};
}

} // namespace fuzz
