// SPDX-License-Identifier: GPL-3.0-or-later
#include "framesync.h"

#include "frames.h"

namespace ork2 {

qsizetype bytesBeforeNextFrame(QByteArrayView buffer)
{
    // Any other 'H' in this buffer is a corrupted digit: if it were kept, it would form a false
    // frame with the start of the next one.
    if (buffer.endsWith(kCarriageReturn)) {
        return buffer.size();
    }
    const qsizetype start = buffer.lastIndexOf(kFrameStart);
    if (start < 0) {
        return 0;
    }
    return start > 0 ? start : buffer.size();
}

} // namespace ork2
