// SPDX-License-Identifier: GPL-3.0-or-later
#include "connections.h"

#include "comport.h"
#include "convertdata.h"
#include "datalogger.h"
#include "mainbackend.h"
#include "wiring.h"

#include <QThread>

namespace ork2 {

// Where a signal has two receivers, the order of the connections is the order of delivery: the
// controller receives a reading before the file writer does, and the file writer receives a channel
// state before the controller does.
void connectMeasurement(const MeasurementObjects &objects)
{
    const auto &[controller, workerThread, comPort, parser, fileWriter] = objects;
    connectWorker(workerThread, comPort, parser);
    QObject::connect(&comPort, SIGNAL(error_(QString)), &controller, SLOT(on_error(QString)));
    QObject::connect(&controller, SIGNAL(savesettings(QString, int, int, int, int, int)), &comPort,
        SLOT(Write_Settings_Port(QString, int, int, int, int, int)));
    QObject::connect(&controller, SIGNAL(plugPlayComSettings(int, int, QString)), &comPort,
        SLOT(ComPortSettings(int, int, QString)));
    QObject::connect(&comPort, SIGNAL(outPort(QString)), &controller, SLOT(on_error(QString)));
    QObject::connect(&comPort, SIGNAL(statusBarMsg(QString)), &controller, SLOT(on_error(QString)));
    QObject::connect(&controller, SIGNAL(startButtonClicked()), &comPort, SLOT(ConnectPort()));
    QObject::connect(&controller, SIGNAL(stopButtonClicked()), &comPort, SLOT(DisconnectPort()));
    QObject::connect(&comPort, SIGNAL(connectLED(bool)), &controller, SLOT(connectionLed(bool)));
    QObject::connect(&fileWriter, SIGNAL(dataLedStatus(bool)), &controller, SLOT(dataLed(bool)));
    QObject::connect(&parser, SIGNAL(readyToShowClouds(QString, QString)), &controller,
        SLOT(showTheCloud(QString, QString)));
    QObject::connect(&controller, SIGNAL(connectionErrorClouds(QString, QString)), &controller,
        SLOT(showTheCloud(QString, QString)));
    connectFileWriter(parser, fileWriter);
    QObject::connect(&controller, SIGNAL(timeToData(QString, QString)), &fileWriter,
        SLOT(DateTimeRecieve(QString, QString)));
    QObject::connect(&parser, SIGNAL(readyToShowCloudChanel(QString)), &controller,
        SLOT(showTheCloudChanel(QString)));
}

} // namespace ork2
