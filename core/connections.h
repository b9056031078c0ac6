// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ComPort;
class QThread;
class convertData;
class datalogger;
class mainBackEnd;

namespace ork2 {

struct MeasurementObjects
{
    mainBackEnd &controller;
    QThread &workerThread;
    ComPort &comPort;
    convertData &parser;
    datalogger &fileWriter;
};

// Connects the objects that handle readings, port commands and minute marks. The worker may be
// moved to its thread afterwards: its connections then become queued.
void connectMeasurement(const MeasurementObjects &objects);

} // namespace ork2
