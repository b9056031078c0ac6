// SPDX-License-Identifier: GPL-3.0-or-later
#include "sharedvalues.h"

QAtomicInt noReplyCounter{0};
QString currentPortName;
