// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>

// Turns frames of the instrument into values; bytes in, texts and numbers out, no port needed.
// Lives in the main thread and keeps no state. Formats: frames.h.
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
    // Heights of the first and second layer as digits, in metres; "5000" is no value.
    void readyToShowClouds(QString, QString);
    // "0" main channel, "1" reserve channel.
    void readyToShowCloudChanel(QString);

public Q_SLOTS:
    void parseWindData(QByteArray data);
    void parseTempData(QByteArray data);
    // Expects a whole frame and tests neither its length nor its digits: the serial worker passes
    // only 11-byte frames. Bytes missing from a short array count as absent characters.
    // Emits readyToShowClouds, then readyToShowCloudChanel.
    void parseCloudData(QByteArray data);
};
