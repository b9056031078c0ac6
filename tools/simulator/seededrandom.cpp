// SPDX-License-Identifier: GPL-3.0-or-later
#include "seededrandom.h"

namespace ork2 {

int SeededRandom::between(int lowest, int highest)
{
    Q_ASSERT(lowest <= highest);
    const auto values = static_cast<quint64>(static_cast<qint64>(highest) - lowest + 1);
    const quint64 scaled = (static_cast<quint64>(m_engine()) * values) >> 32;
    return static_cast<int>(lowest + static_cast<qint64>(scaled));
}

} // namespace ork2
