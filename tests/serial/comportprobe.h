// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "comport.h"

// What the serial worker keeps to itself, for tests.
class ComPortProbe
{
public:
    static void setHeater(ComPort &port, bool on) { port.m_heater = on; }
    [[nodiscard]] static QTimer &watch(ComPort &port) { return port.m_watch; }
};
