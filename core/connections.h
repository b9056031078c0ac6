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

// The way of a reading, of a command to the port and of a minute's mark between these objects.
// Queued where the worker's thread is involved, so the worker may be moved there afterwards.
void connectMeasurement(const MeasurementObjects &objects);

} // namespace ork2
