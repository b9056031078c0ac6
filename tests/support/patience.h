// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// How long a test waits for what is to come, in milliseconds. A sanitizer on a busy machine slows a
// program down many times over, and the toolkit's own 5 s were too few there.
constexpr int kPatienceMs = 60000;
