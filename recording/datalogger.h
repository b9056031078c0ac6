// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "uploadqueue.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QVariant>

#include <array>

class QFile;

namespace ork2 {
// Seconds since the last frame from which on nothing is written.
inline constexpr int kReplyAgeLimit = 6;
}

// Writes one line per time mark to the day's file of the instrument:
// <base>/Data/ORK-2 N<unit>/<yyyy.MM.dd>.txt, UTF-8, a record being
// CR LF time TAB first layer TAB second layer TAB channel; the line break comes first.
// Main thread. A file that cannot be written is told by dataLedStatus(false); the next mark tries
// anew.
//
// While the upload flag is set, each mark's row also goes to the database, written to the file or
// not; see UploadQueue for what becomes of it.
class datalogger : public QObject
{
    Q_OBJECT

public:
    explicit datalogger(QObject *parent = nullptr);

    // A measurement starts: what came before is not its reading, so nothing is written to the file
    // or the database until the next one comes.
    void awaitReading() { m_awaitingReading = true; }

Q_SIGNALS:
    void debugLog(QString log);
    void sendSqlStr(QVariantList data); // declared, never emitted
    // true: a line was written; false: it was not, or the disk refused it afterwards
    void dataLedStatus(bool);

public Q_SLOTS:
    // Wind: address 1, 2 or 3; others are ignored, as are temperatures from others than 11, 12, 13.
    void DataWindSpeedRecieved(int address, double d1, double d2, double d3);
    void DataDirSpeedRecieved(int address, double d1, double d2, double d3);
    void DataExtSpeedRecieved(int address, double d1, double d2, double d3);
    void DataCloudRecieved(QString fCLayer, QString sCLayer);
    void DataCloudChanel(QString cChanel);
    void DataTempRecieved(int address, double temperature);
    // date "yyyy/MM/dd", time "hh:mm:ss"; writes the line.
    void DateTimeRecieve(QString date, QString time);
    void sqlChkBox(bool chk); // the upload flag; false leaves waiting rows to be uploaded
    void SendStringToFile();
    void dbLog(QString log);
    // The uploader's row for a written line: date with dashes, time, unit number, layers, channel.
    QVariantList arrayToQVList(QByteArray data);

private:
    // Tests read the sensor values and the uploader's state.
    friend class DataloggerProbe;

    static constexpr int kWindSensors = 3;
    static constexpr int kTemperatureAddressShift = 10;

    // What one sensor last sent; kept, but not written to the file.
    struct SensorBlock
    {
        std::array<double, 3> speed;
        std::array<double, 3> direction;
        std::array<double, 3> critical;
        double temperature;
    };
    enum class DateForm { Dots = 0, Plain = 1, PlainLastSix = 2 };

    [[nodiscard]] SensorBlock *block(int address);
    [[nodiscard]] QString fileDate() const;
    [[nodiscard]] QByteArray header() const;
    [[nodiscard]] QByteArray record() const;
    [[nodiscard]] bool writeRecord(const QString &path);
    void bringToDisk(const QFile &file);
    static void lookForHeaderTemplate();

    std::array<SensorBlock, kWindSensors> m_sensors;
    int m_unitNumber = 0;                 // read once; 0: no folder and no header are made
    DateForm m_dateForm = DateForm::Dots; // nothing sets another
    bool m_upload = false;
    bool m_awaitingReading = false;
    QString m_date; // as received, with slashes
    QString m_time;
    QString m_fileNamePrefix; // nothing sets the two
    QString m_fileNameSuffix;
    QString m_firstLayer;
    QString m_secondLayer;
    QString m_channelName;
    ork2::UploadQueue m_uploads;
    QThreadPool m_diskThread; // has the system bring written lines to the disk
};
