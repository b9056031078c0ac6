// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datalogger.h"
#include "station.h"

#include <QThread>

namespace ork2 {

// Gives tests access to private members of the station: its clock and its ticks.
class StationProbe
{
public:
    explicit StationProbe(Station &station)
        : m_station(station)
    { }

    void setClock(QDateTime (*now)()) { m_station.m_now = now; }
    // The test calls the ticks itself.
    void stopTimers()
    {
        m_station.m_tickTimer.stop();
        m_station.m_saveTimer.stop();
    }
    void tick() { m_station.tick(); }
    void saveTick() { m_station.saveTick(); }

    [[nodiscard]] bool isOpen() const { return m_station.m_state == Station::State::Open; }
    [[nodiscard]] bool isWaiting() const { return m_station.m_state == Station::State::Waiting; }
    // Neither opening nor closing the port.
    [[nodiscard]] bool isSettled() const { return isOpen() || isWaiting(); }
    [[nodiscard]] int retrySeconds() const { return m_station.m_retrySeconds; }
    [[nodiscard]] bool workerAnswered() const { return m_station.m_workerAnswered; }
    [[nodiscard]] ComPort &comPort() { return *m_station.m_comPort; }
    [[nodiscard]] datalogger &writer() { return *m_station.m_writer; }

private:
    Station &m_station;
};

} // namespace ork2
