// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAtomicInt>
#include <QString>

// Seconds since the last complete frame. The controller adds one each second (main thread), the
// serial worker sets it to 0 on each frame (worker thread), the file writer reads it. Use the
// relaxed operations only: a stale read costs at most one second of judgement.
extern QAtomicInt noReplyCounter;

// Name of the serial port that the next measurement opens, e.g. "COM3" or "ttyUSB0"; main thread
// only.
extern QString currentPortName;
