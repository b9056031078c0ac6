// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <random>

namespace ork2 {

// Random numbers that are the same for one seed everywhere; the standard distributions are not.
class SeededRandom
{
public:
    explicit SeededRandom(quint32 seed)
        : m_engine(seed)
    { }

    // Both ends included; lowest <= highest.
    [[nodiscard]] int between(int lowest, int highest);
    // True once in the given number of calls, on average.
    [[nodiscard]] bool oneIn(int calls) { return between(1, calls) == 1; }

private:
    std::mt19937 m_engine;
};

} // namespace ork2
