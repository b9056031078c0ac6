// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

namespace ork2 {

// How many leading bytes of a full buffer (kFrameLength bytes) do not belong to the next frame.
// After a lost or an added byte, or an opening in mid-frame, a full buffer ends inside a frame;
// what begins at its last 'H' is the beginning of that frame. A carriage return at the buffer's end
// is the end of a frame, so nothing is kept then. 0: a buffer in which nothing says where a frame
// begins.
[[nodiscard]] qsizetype bytesBeforeNextFrame(QByteArrayView buffer);

} // namespace ork2
