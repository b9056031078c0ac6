// SPDX-License-Identifier: GPL-3.0-or-later
#include "readingframe.h"

#include "frames.h"

namespace ork2 {

QByteArray heightField(int height)
{
    Q_ASSERT(height >= 0 && height <= kMaxHeight);
    return QByteArray::number(height).rightJustified(kHeightDigits, '0');
}

QByteArray readingFrame(Channel channel, const QByteArray &first, const QByteArray &second)
{
    Q_ASSERT(first.size() == kHeightDigits && second.size() == kHeightDigits);
    QByteArray frame(kFrameLength, kFrameStart);
    frame[kChannelOffset] = static_cast<char>(channel);
    frame.replace(kFirstLayerOffset, kHeightDigits, first);
    frame.replace(kSecondLayerOffset, kHeightDigits, second);
    frame.back() = kCarriageReturn;
    return frame;
}

QByteArray readingFrame(const Reading &reading)
{
    return readingFrame(
        reading.channel, heightField(reading.firstLayer), heightField(reading.secondLayer));
}

} // namespace ork2
