// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArrayView>

namespace ork2 {

// Returns the number of leading bytes of a full buffer (kFrameLength bytes) that do not belong to
// the next frame. After a lost or additional byte, or if the port was opened in the middle of a
// frame, a full buffer ends inside a frame, and the last 'H' is the start of that frame. A carriage
// return at the end of the buffer is the end of a frame, so no byte is kept. Returns 0 if the
// buffer contains no start of a frame.
[[nodiscard]] qsizetype bytesBeforeNextFrame(QByteArrayView buffer);

} // namespace ork2
