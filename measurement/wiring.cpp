// SPDX-License-Identifier: GPL-3.0-or-later
#include "wiring.h"

#include "comport.h"
#include "convertdata.h"
#include "datalogger.h"

#include <QThread>

namespace ork2 {

void connectWorker(QThread &workerThread, ComPort &comPort, convertData &parser)
{
    QObject::connect(&workerThread, SIGNAL(finished()), &workerThread, SLOT(deleteLater()));
    QObject::connect(&workerThread, SIGNAL(started()), &comPort, SLOT(process_Port()));
    QObject::connect(&comPort, SIGNAL(finished_Port()), &workerThread, SLOT(quit()));
    QObject::connect(&workerThread, SIGNAL(finished()), &comPort, SLOT(deleteLater()));
    QObject::connect(&comPort, SIGNAL(finished_Port()), &workerThread, SLOT(deleteLater()));
    QObject::connect(
        &comPort, SIGNAL(readyToShowClouds(QByteArray)), &parser, SLOT(parseCloudData(QByteArray)));
}

void connectFileWriter(convertData &parser, datalogger &fileWriter)
{
    QObject::connect(&parser, SIGNAL(readyToShowClouds(QString, QString)), &fileWriter,
        SLOT(DataCloudRecieved(QString, QString)));
    QObject::connect(&parser, SIGNAL(readyToShowCloudChanel(QString)), &fileWriter,
        SLOT(DataCloudChanel(QString)));
}

void startWorker(QThread &workerThread, ComPort &comPort)
{
    comPort.moveToThread(&workerThread);
    comPort.port().moveToThread(&workerThread);
    comPort.clearReceiveBuffer();
    workerThread.start();
}

} // namespace ork2
