// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recorder.h"

namespace ork2 {

// Gives tests access to the station of the recorder.
class RecorderProbe
{
public:
    explicit RecorderProbe(Recorder &recorder)
        : m_recorder(recorder)
    { }

    [[nodiscard]] Station &station() { return *m_recorder.m_station; }

private:
    Recorder &m_recorder;
};

} // namespace ork2
