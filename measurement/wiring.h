// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class ComPort;
class QThread;
class convertData;
class datalogger;

namespace ork2 {

// Connects the serial worker with its thread and with the parser. The worker may be moved to its
// thread afterwards: its connections then become queued.
void connectWorker(QThread &workerThread, ComPort &comPort, convertData &parser);

// Passes heights and channel of each reading to the file writer.
void connectFileWriter(convertData &parser, datalogger &fileWriter);

// Moves the worker and its port, which is not its child, to the thread and starts the thread.
void startWorker(QThread &workerThread, ComPort &comPort);

} // namespace ork2
