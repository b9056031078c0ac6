// SPDX-License-Identifier: GPL-3.0-or-later
#include "codetables.h"

#include <algorithm>
#include <array>

namespace ork2 {

namespace {

// Lower limits of the figures 1 to 9, metres.
constexpr std::array<int, 9> kLimits{50, 100, 200, 300, 600, 1000, 1500, 2000, 2500};

// 100 feet are 30.48 m: integers, so that a limit is exact.
constexpr int kHundredFeetCentimetres = 3048;
constexpr int kGroupDigits = 3;

} // namespace

QChar cloudBaseFigure(int metres)
{
    const auto above = std::upper_bound(kLimits.begin(), kLimits.end(), metres);
    return QChar(u'0' + static_cast<char16_t>(above - kLimits.begin()));
}

QString metarCloudGroup(int metres)
{
    const int hundredsOfFeet = metres * 100 / kHundredFeetCentimetres;
    return QStringLiteral("///%1").arg(hundredsOfFeet, kGroupDigits, 10, QChar(u'0'));
}

} // namespace ork2
