// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

// Parses the frames of the instrument. Does not access the port. Lives in the main thread and has
// no state. The formats are defined in frames.h.
class convertData : public QObject
{
    Q_OBJECT

public:
    explicit convertData(QObject *parent = nullptr);

Q_SIGNALS:
    void crc16result(QByteArray crc); // declared, never emitted
    void readyToShowWindSpeed(int address, double data1, double data2, double data3);
    void readyToShowWindDirection(int address, double data1, double data2, double data3);
    void readyToShowWindCritical(int address, double data1, double data2, double data3);
    void readyToShowTemp(int address, double Temp);
    // Heights of the first and second layer in metres, as digits; "5000" means no value.
    void readyToShowClouds(QString, QString);
    // "0" is the main channel, "1" the reserve channel.
    void readyToShowCloudChanel(QString);

public Q_SLOTS:
    void parseWindData(QByteArray data);
    void parseTempData(QByteArray data);
    // Expects a complete frame. Checks neither its length nor its digits because the serial worker
    // emits 11-byte frames only. If the array is too short, the missing characters are omitted.
    // Emits readyToShowClouds, then readyToShowCloudChanel.
    void parseCloudData(QByteArray data);
};
