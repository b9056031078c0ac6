// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "comport.h"

// Gives tests access to private members of the serial worker.
class ComPortProbe
{
public:
    static void setHeater(ComPort &port, bool on) { port.m_heater = on; }
    [[nodiscard]] static QTimer &watch(ComPort &port) { return port.m_watch; }
};
