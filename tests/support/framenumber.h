// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "readingframe.h"

// Frames that can be told from each other: the number, 0 or more, decides the first height.
inline int firstHeight(int number)
{
    return number % 2999 + 1;
}

inline QByteArray frameNumber(int number)
{
    return ork2::readingFrame({ork2::Channel::Main, firstHeight(number), 2500});
}
