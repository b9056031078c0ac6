// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

// The timeout for expected events, in milliseconds. A sanitizer on a busy machine slows a program
// down considerably, so Qt's default of 5 s is not sufficient.
constexpr int kTimeoutMs = 60000;
