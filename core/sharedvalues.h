// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAtomicInt>
#include <QString>

// Seconds since the last complete frame. Incremented by the controller every second (main thread),
// set to 0 by the serial worker at each frame (worker thread) and read by the file writer. Use only
// the relaxed operations: an outdated value is wrong by at most one second.
extern QAtomicInt noReplyCounter;

// Name of the serial port that the next measurement opens, e.g. "COM3" or "ttyUSB0"; main thread
// only.
extern QString currentPortName;
