// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datalogger.h"

// Gives tests access to private members of the file writer.
class DataloggerProbe
{
public:
    explicit DataloggerProbe(const datalogger &writer)
        : m_writer(writer)
    { }

    // Null while no upload is running.
    [[nodiscard]] QThread *uploadThread() const { return m_writer.m_uploads.m_thread; }
    [[nodiscard]] databasesql *uploader() const { return m_writer.m_uploads.m_uploader; }
    [[nodiscard]] qsizetype waitingRows() const { return m_writer.m_uploads.m_waitingRows.size(); }
    [[nodiscard]] bool uploads() const { return m_writer.m_upload; }

    static void setDateForm(datalogger &writer, int form)
    {
        writer.m_dateForm = static_cast<datalogger::DateForm>(form);
    }

    // Three blocks of ten: speeds, directions, critical values, temperature.
    [[nodiscard]] QList<double> sensorValues() const
    {
        QList<double> values;
        for (const auto &sensor : m_writer.m_sensors) {
            for (const auto &triple : {sensor.speed, sensor.direction, sensor.critical}) {
                values << triple[0] << triple[1] << triple[2];
            }
            values << sensor.temperature;
        }
        return values;
    }

private:
    const datalogger &m_writer;
};
