// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readingframe.h"

// Distinguishable frames: the first height depends on the number, which is 0 or greater.
inline int firstHeight(int number)
{
    return number % 2999 + 1;
}

inline QByteArray frameNumber(int number)
{
    return ork2::readingFrame({ork2::Channel::Main, firstHeight(number), 2500});
}
