// SPDX-License-Identifier: GPL-3.0-or-later
#include "datalogger.h"

#include "datafolder.h"
#include "dayfileformat.h"
#include "frames.h"
#include "settingskeys.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

const QString kFileSuffix = QStringLiteral(".txt");
constexpr int kShortDateLength = 6;

std::array<double, 3> triple(double value)
{
    return {value, value, value};
}

// Opening a pipe would block the user interface until its other end is opened.
bool isRegular(const QFile &file)
{
    return QFileInfo(file).isFile();
}

} // namespace

datalogger::datalogger(QObject *parent)
    : QObject(parent)
    , m_unitNumber(ork2::storedText(ork2::kUnitNumber).toInt())
    , m_channelName(ork2::kMainChannelName.toString())
{
    prepare();
}

datalogger::datalogger(const ork2::RecordingPlace &place, QObject *parent)
    : QObject(parent)
    , m_place(place)
    , m_unitNumber(place.unitNumber)
    , m_channelName(ork2::kMainChannelName.toString())
{
    prepare();
}

void datalogger::prepare()
{
    connect(&m_uploads, SIGNAL(log(QString)), this, SLOT(dbLog(QString)));
    m_diskThread.setMaxThreadCount(1);
    // Values below the range of the sensors mean "never received"; each sensor has a different one.
    double neverReceived = -5005.0;
    for (SensorBlock &sensor : m_sensors) {
        sensor = {
            triple(neverReceived), triple(neverReceived), triple(neverReceived), neverReceived};
        neverReceived -= 1.0;
    }
}

void datalogger::setUploadTarget(std::function<void(const QVariantList &)> target)
{
    m_uploadTarget = std::move(target);
}

datalogger::SensorBlock *datalogger::block(int address)
{
    const bool known = address >= 1 && address <= kWindSensors;
    return known ? &m_sensors.at(static_cast<std::size_t>(address - 1)) : nullptr;
}

void datalogger::DataWindSpeedRecieved(int address, double d1, double d2, double d3)
{
    if (SensorBlock *sensor = block(address)) {
        sensor->speed = {d1, d2, d3};
    }
}

void datalogger::DataDirSpeedRecieved(int address, double d1, double d2, double d3)
{
    if (SensorBlock *sensor = block(address)) {
        sensor->direction = {d1, d2, d3};
    }
}

void datalogger::DataExtSpeedRecieved(int address, double d1, double d2, double d3)
{
    if (SensorBlock *sensor = block(address)) {
        sensor->critical = {d1, d2, d3};
    }
}

void datalogger::DataTempRecieved(int address, double temperature)
{
    if (address <= kTemperatureAddressShift) {
        return;
    }
    if (SensorBlock *sensor = block(address - kTemperatureAddressShift)) {
        sensor->temperature = temperature;
    }
}

void datalogger::DataCloudRecieved(QString fCLayer, QString sCLayer)
{
    m_firstLayer = fCLayer;
    m_secondLayer = sCLayer;
    m_awaitingReading = false;
}

void datalogger::DataCloudChanel(QString cChanel)
{
    const bool main = ork2::channelOf(cChanel) == ork2::Channel::Main;
    m_channelName = (main ? ork2::kMainChannelName : ork2::kReserveChannelName).toString();
}

void datalogger::DateTimeRecieve(QString date, QString time)
{
    m_date = date;
    m_time = time;
    SendStringToFile();
}

void datalogger::sqlChkBox(bool chk)
{
    m_upload = chk;
}

void datalogger::dbLog(QString log)
{
    Q_EMIT debugLog(log);
}

void datalogger::SendStringToFile()
{
    checkHeaderTemplate();
    const QString folder = this->folder();
    const QString path = folder + m_fileNamePrefix + fileDate() + m_fileNameSuffix + kFileSuffix;
    if (m_unitNumber != 0 && !QDir(folder).exists()) {
        QDir().mkpath(folder); // a failure is detected when the file is opened
    }
    for (QString *layer : {&m_firstLayer, &m_secondLayer}) {
        if (*layer == ork2::kNoValueText) {
            *layer = ork2::kNoValueDashes.toString();
        }
    }
    Q_EMIT dataLedStatus(writeRecord(path));
    if (m_upload && !m_awaitingReading) {
        const QVariantList row = arrayToQVList(record());
        if (m_uploadTarget) {
            m_uploadTarget(row);
        } else {
            m_uploads.add(row);
        }
    }
}

void datalogger::checkHeaderTemplate()
{
    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/Data/Header.txt"));
    if (!file.exists()) {
        qDebug() << "File not existed";
    } else if (!isRegular(file) || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "File wasn't open";
    } // not read: the text is not used
}

QString datalogger::folder() const
{
    return m_place ? ork2::dayFileFolder(*m_place) : ork2::dayFileFolder(m_unitNumber);
}

QString datalogger::fileDate() const
{
    QString date = m_date;
    if (m_dateForm == DateForm::Dots) {
        return date.replace(u'/', u'.');
    }
    date.remove(u'/');
    return m_dateForm == DateForm::Plain ? date : date.right(kShortDateLength);
}

QByteArray datalogger::header() const
{
    const QStringList columns{ork2::kTimeHeading.toString(), ork2::kFirstLayerHeading.toString(),
        ork2::kSecondLayerHeading.toString(), ork2::kChannelHeading.toString()};
    return QStringLiteral("%1 %2%3%4%3")
        .arg(ork2::kUnitHeading)
        .arg(m_unitNumber)
        .arg(ork2::kLineBreak, columns.join(ork2::kFieldSeparator))
        .toUtf8();
}

QByteArray datalogger::record() const
{
    const QStringList fields{m_time, m_firstLayer, m_secondLayer, m_channelName};
    return (ork2::kLineBreak.toString() + fields.join(ork2::kFieldSeparator)).toUtf8();
}

bool datalogger::writeRecord(const QString &path)
{
    QFile file(path);
    m_writeError.clear();
    // Always open for appending: a network share that is unavailable reports every file as missing
    // and may be available again immediately afterwards. Not in text mode, so that the bytes are
    // the same on all systems. Unbuffered, so that write() reports errors and close() does not
    // write again.
    if ((file.exists() && !isRegular(file))
        || !file.open(QIODevice::Append | QIODevice::Unbuffered)) {
        m_writeError = file.errorString();
        qDebug() << "File wasn't open";
        return false;
    }
    const qint64 wholeLines = file.size();
    // After a power failure, the file may be empty; it then gets a new header.
    const bool newDay = m_unitNumber != 0 && wholeLines == 0;
    const bool answering =
        !m_awaitingReading && noReplyCounter.loadRelaxed() < ork2::kReplyAgeLimit;
    const QByteArray bytes =
        (newDay ? header() : QByteArray()) + (answering ? record() : QByteArray());
    if (file.write(bytes) != bytes.size()) {
        // On a full disk, part of a line may have been written. Remove it to keep complete lines
        // only.
        qDebug() << "File wasn't written: " << file.errorString();
        m_writeError = file.errorString();
        file.resize(wholeLines);
        if (newDay) {
            file.remove();
        }
        return false;
    }
    if (newDay) {
        qDebug() << "New file was create with header";
    }
    flushToDisk(file);
    return answering;
}

// The system may write the new file size to the disk within seconds but the data only after half a
// minute. A power failure in between would leave zeros in place of the line.
void datalogger::flushToDisk(const QFile &file)
{
#ifdef Q_OS_UNIX
    const int descriptor = ::fcntl(file.handle(), F_DUPFD_CLOEXEC, 0);
    if (descriptor < 0) {
        return;
    }
    const auto sync = [this, descriptor] {
        // Some disks and network shares report a failed write only here.
        if (::fsync(descriptor) != 0 && errno != EINVAL) { // EINVAL: cannot be synced
            const QString text = qt_error_string(errno);
            QMetaObject::invokeMethod(this, [this, text] {
                qDebug() << "File wasn't written: " << text;
                m_writeError = text;
                Q_EMIT dataLedStatus(false);
            });
        }
        ::close(descriptor);
    };
    // In a separate thread, because a slow disk would block the user interface. While a previous
    // flush is still running, the line is flushed together with the next one.
    if (!m_diskThread.tryStart(sync)) {
        ::close(descriptor);
    }
#else
    Q_UNUSED(file)
#endif
}

QVariantList datalogger::arrayToQVList(QByteArray data)
{
    if (data.startsWith("\r\n")) {
        data.remove(0, 2);
    }
    QVariantList row{QString(m_date).replace(u'/', u'-')};
    const QList<QByteArray> fields = data.split('\t');
    for (const QByteArray &field : fields) {
        row.append(field);
    }
    row.insert(2, m_unitNumber);
    return row;
}
