// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "frames.h"

#include <QByteArray>

namespace ork2 {

inline constexpr int kMaxHeight = 9999; // the largest number with four digits

// Heights in metres, 0 to kMaxHeight, or one of the codes in frames.h.
struct Reading
{
    Channel channel;
    int firstLayer;
    int secondLayer;

    friend bool operator==(const Reading &, const Reading &) = default;
};

// Returns the four digits of a height.
[[nodiscard]] QByteArray heightField(int height);

// The fields have kHeightDigits characters each and are sent unchanged.
[[nodiscard]] QByteArray readingFrame(
    Channel channel, const QByteArray &first, const QByteArray &second);
[[nodiscard]] QByteArray readingFrame(const Reading &reading);

} // namespace ork2
