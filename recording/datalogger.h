// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datafolder.h"
#include "uploadqueue.h"

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QThreadPool>
#include <QVariant>

#include <array>
#include <functional>
#include <optional>

class QFile;

namespace ork2 {
// If no frame has been received for this number of seconds, nothing is written.
inline constexpr int kReplyAgeLimit = 6;
}

// Appends one record per minute to the instrument's day file (UTF-8):
//   <base>/Data/ORK-2 N<unit>/<yyyy.MM.dd>.txt
// A record is CR LF time TAB first layer TAB second layer TAB channel; the line break comes first.
// Main thread. A failure to write is reported through dataLedStatus(false); the next minute tries
// again.
//
// While the upload flag is set, each record is also passed to the UploadQueue, even if it could not
// be written to the file.
class datalogger : public QObject
{
    Q_OBJECT

public:
    // Uses the unit number and the folder of the settings store.
    explicit datalogger(QObject *parent = nullptr);
    // Uses the given place only; the settings store is neither read nor written.
    explicit datalogger(const ork2::RecordingPlace &place, QObject *parent = nullptr);

    // Call at the start of a measurement. Nothing is written to the file or the database until the
    // next reading is received, so that no reading of an earlier measurement is recorded.
    void awaitReading() { m_awaitingReading = true; }

    // Rows to upload are passed to this function instead of the UploadQueue, in the main thread.
    void setUploadTarget(std::function<void(const QVariantList &)> target);

    // The system's text of the error that prevented the last line from being written; empty if it
    // was written, or if there was nothing to write.
    [[nodiscard]] QString writeError() const { return m_writeError; }
    // Returns whether a line is being flushed to the disk, which may take long on a slow disk.
    [[nodiscard]] bool isFlushing() const { return m_diskThread.activeThreadCount() > 0; }

Q_SIGNALS:
    void debugLog(QString log);
    void sendSqlStr(QVariantList data); // declared, never emitted
    // true: a line was written; false: it was not, or it could not be flushed to the disk
    void dataLedStatus(bool);

public Q_SLOTS:
    // Addresses other than 1 to 3 for wind and 11 to 13 for temperature are ignored.
    void DataWindSpeedRecieved(int address, double d1, double d2, double d3);
    void DataDirSpeedRecieved(int address, double d1, double d2, double d3);
    void DataExtSpeedRecieved(int address, double d1, double d2, double d3);
    void DataCloudRecieved(QString fCLayer, QString sCLayer);
    void DataCloudChanel(QString cChanel);
    void DataTempRecieved(int address, double temperature);
    // date "yyyy/MM/dd", time "hh:mm:ss"; writes the line.
    void DateTimeRecieve(QString date, QString time);
    void sqlChkBox(bool chk); // sets the upload flag; rows already queued are still uploaded
    void SendStringToFile();
    void dbLog(QString log);
    // Returns the row to upload for a record: date with dashes, time, unit number, layers, channel.
    QVariantList arrayToQVList(QByteArray data);

private:
    // Tests read the sensor values and the uploader's state.
    friend class DataloggerProbe;

    static constexpr int kWindSensors = 3;
    static constexpr int kTemperatureAddressShift = 10;

    // The last values of one sensor; stored, but not written to the file.
    struct SensorBlock
    {
        std::array<double, 3> speed;
        std::array<double, 3> direction;
        std::array<double, 3> critical;
        double temperature;
    };
    enum class DateForm { Dots = 0, Plain = 1, PlainLastSix = 2 };

    [[nodiscard]] SensorBlock *block(int address);
    void prepare();
    [[nodiscard]] QString folder() const;
    [[nodiscard]] QString fileDate() const;
    [[nodiscard]] QByteArray header() const;
    [[nodiscard]] QByteArray record() const;
    [[nodiscard]] bool writeRecord(const QString &path);
    void flushToDisk(const QFile &file);
    static void checkHeaderTemplate();

    std::array<SensorBlock, kWindSensors> m_sensors;
    std::optional<ork2::RecordingPlace> m_place; // unset: that of the settings store
    int m_unitNumber = 0;                 // read once; 0: no folder and no header are created
    DateForm m_dateForm = DateForm::Dots; // never changed
    bool m_upload = false;
    bool m_awaitingReading = false;
    QString m_date; // as received, with slashes
    QString m_time;
    QString m_fileNamePrefix; // prefix and suffix are always empty
    QString m_fileNameSuffix;
    QString m_firstLayer;
    QString m_secondLayer;
    QString m_channelName;
    QString m_writeError;
    ork2::UploadQueue m_uploads;
    std::function<void(const QVariantList &)> m_uploadTarget; // replaces m_uploads if set
    QThreadPool m_diskThread;                                 // flushes written lines to the disk
};
