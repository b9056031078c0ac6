// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <random>

namespace ork2 {

// Random numbers that depend only on the seed. The results of the standard distributions differ
// between implementations.
class SeededRandom
{
public:
    explicit SeededRandom(quint32 seed)
        : m_engine(seed)
    { }

    // Returns a number from lowest to highest, inclusive; lowest must not exceed highest.
    [[nodiscard]] int between(int lowest, int highest);
    // Returns true once per the given number of calls, on average.
    [[nodiscard]] bool oneIn(int calls) { return between(1, calls) == 1; }

private:
    std::mt19937 m_engine;
};

} // namespace ork2
