// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "frames.h"

#include <QByteArray>

namespace ork2 {

inline constexpr int kHighestHeight = 9999; // four digits hold no more

// Heights in metres, 0 to kHighestHeight, or one of the codes of frames.h.
struct Reading
{
    Channel channel;
    int firstLayer;
    int secondLayer;

    friend bool operator==(const Reading &, const Reading &) = default;
};

// The four digits of a height.
[[nodiscard]] QByteArray heightField(int height);

// Fields are kHeightDigits characters each and are sent as they stand.
[[nodiscard]] QByteArray readingFrame(
    Channel channel, const QByteArray &first, const QByteArray &second);
[[nodiscard]] QByteArray readingFrame(const Reading &reading);

} // namespace ork2
