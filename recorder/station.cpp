// SPDX-License-Identifier: GPL-3.0-or-later
#include "station.h"

#include "comport.h"
#include "convertdata.h"
#include "datalogger.h"
#include "minutetick.h"
#include "portcommands.h"
#include "portname.h"
#include "retrydelay.h"
#include "sharedvalues.h"
#include "watchtiming.h"
#include "wiring.h"

#include <QCoreApplication>
#include <QEvent>
#include <QFileInfo>
#include <QThread>

#include <unistd.h>
#include <utility>

namespace ork2 {

Station::Station(QString port, const RecordingPlace &place, QObject *parent)
    : QObject(parent)
    , m_port(std::move(port))
    , m_workerThread(new QThread)
    , m_comPort(new ComPort)
    , m_commands(new PortCommands(*m_comPort))
    , m_parser(new convertData(this))
{
    for (QTimer *timer : {&m_tickTimer, &m_saveTimer}) {
        // A coarse timer may deviate by 5 % and so miss the first second of a minute.
        timer->setTimerType(Qt::PreciseTimer);
    }
    connectObjects();
    useWriter(new datalogger(place, this));
    m_commands->moveToThread(m_workerThread);
    startWorker(*m_workerThread, *m_comPort);
}

Station::~Station()
{
    end();
}

void Station::connectObjects()
{
    connectWorker(*m_workerThread, *m_comPort, *m_parser);
    connect(m_workerThread, &QThread::finished, m_commands, &QObject::deleteLater);
    connect(this, &Station::openRequested, m_commands, &PortCommands::open);
    connect(this, &Station::closeRequested, m_commands, &PortCommands::close);
    connect(this, &Station::answerRequested, m_commands, &PortCommands::answer);
    connect(m_commands, &PortCommands::opened, this, &Station::opened);
    connect(m_commands, &PortCommands::closed, this, &Station::waitForRetry);
    connect(m_commands, &PortCommands::answered, this, [this] { m_workerAnswered = true; });
    connect(m_comPort, &ComPort::error_, this, [this](const QString &text) { m_portText = text; });
    connect(m_comPort, &ComPort::connectLED, this, [this](bool ok) {
        if (!ok) {
            closePort(QStringLiteral("вместо измерений приходят другие байты"));
        }
    });
    connect(&m_comPort->port(), &QIODevice::aboutToClose, this, &Station::portClosed);
    connect(m_parser, &convertData::readyToShowClouds, this, &Station::takeHeights);
    connect(m_parser, &convertData::readyToShowCloudChanel, this, &Station::takeChannel);
    connect(&m_tickTimer, &QTimer::timeout, this, &Station::tick);
    connect(&m_saveTimer, &QTimer::timeout, this, &Station::saveTick);
}

void Station::useWriter(datalogger *writer)
{
    delete m_writer;
    m_writer = writer;
    connectFileWriter(*m_parser, *m_writer);
    connect(m_writer, &datalogger::dataLedStatus, this, &Station::lineHandled);
    m_writer->awaitReading();
    setUploadTarget(m_uploadTarget);
}

void Station::setUploadTarget(const std::function<void(const QVariantList &)> &target)
{
    m_uploadTarget = target;
    m_writer->sqlChkBox(static_cast<bool>(target));
    m_writer->setUploadTarget([this](const QVariantList &row) {
        // The file writer checks the age of the reading for the file only.
        if (noReplyCounter.loadRelaxed() < kReplyAgeLimit) {
            m_uploadTarget(row);
        }
    });
}

void Station::start()
{
    m_since = m_now();
    m_tickTimer.start(kRequestIntervalMs);
    m_saveTimer.start(kSaveIntervalMs);
    openPort();
}

void Station::setPort(const QString &port)
{
    m_port = port;
    m_failedAttempts = 0;
    if (m_state == State::Open) {
        closePort(QStringLiteral("порт в настройках другой"));
    }
}

void Station::setPlace(const RecordingPlace &place)
{
    useWriter(new datalogger(place, this));
}

void Station::openNow()
{
    if (m_state == State::Waiting) {
        m_failedAttempts = 0;
        openPort();
    }
}

bool Station::end()
{
    m_tickTimer.stop();
    m_saveTimer.stop();
    if (m_workerThread == nullptr) {
        return true;
    }
    disconnect(&m_comPort->port(), nullptr, this, nullptr);
    connect(
        m_commands, &PortCommands::closed, m_workerThread, &QThread::quit, Qt::DirectConnection);
    Q_EMIT closeRequested(); // an open port would leave its lock file behind
    if (!m_workerThread->wait(kWorkerEndMs)) {
        return false;
    }
    // The thread deletes itself in the event loop, which no longer runs.
    QCoreApplication::sendPostedEvents(m_workerThread, QEvent::DeferredDelete);
    m_workerThread = nullptr;
    m_comPort = nullptr;
    m_commands = nullptr;
    return true;
}

void Station::openPort()
{
    m_state = State::Opening;
    Q_EMIT openRequested(portDevice(m_port));
}

void Station::opened(bool open, const QString &device, int error)
{
    if (!open) {
        reportLost(openFailure(device, error));
        waitForRetry();
        return;
    }
    m_state = State::Open;
    m_quietSeconds = 0;
    Q_EMIT portOpened(device);
}

QString Station::openFailure(const QString &device, int error) const
{
    if (!QFileInfo::exists(device)) {
        return QStringLiteral("устройства %1 нет").arg(device);
    }
    if (::access(device.toLocal8Bit().constData(), R_OK | W_OK) != 0) {
        return QStringLiteral("нет права на устройство %1").arg(device);
    }
    if (error == QSerialPort::PermissionError) {
        return QStringLiteral("устройство %1 занято другой программой").arg(device);
    }
    return QStringLiteral("устройство %1 не открывается (%2)").arg(device, m_portText);
}

void Station::closePort(const QString &cause)
{
    if (m_state != State::Open) {
        return;
    }
    m_state = State::Closing;
    reportLost(cause);
    Q_EMIT closeRequested();
}

// The worker closes the port by itself if its device disappears.
void Station::portClosed()
{
    if (m_state == State::Open) {
        reportLost(QStringLiteral("устройство отключено (%1)").arg(m_portText));
        waitForRetry();
    }
}

void Station::waitForRetry()
{
    m_state = State::Waiting;
    m_retrySeconds = retryDelaySeconds(m_failedAttempts++);
}

void Station::reportLost(const QString &cause)
{
    m_trouble = cause;
    if (!m_lost) {
        m_lost = true;
        m_since = m_last ? m_last->at : m_since;
        Q_EMIT lineLost(cause);
    }
}

void Station::takeHeights(const QString &first, const QString &second)
{
    m_incoming.first = first;
    m_incoming.second = second;
}

// The parser reports the channel after the heights: the reading is complete.
void Station::takeChannel(const QString &channel)
{
    const bool isFirst = !m_last;
    m_incoming.channel = channel;
    m_incoming.at = m_now();
    m_last = m_incoming;
    m_silentSeconds = 0;
    m_quietSeconds = 0;
    if (m_state != State::Open) {
        return; // was on its way when the port was closed
    }
    m_failedAttempts = 0;
    m_trouble.clear();
    if (m_lost || isFirst) {
        m_lost = false;
        Q_EMIT lineBack(m_since);
    }
}

void Station::tick()
{
    noReplyCounter.fetchAndAddRelaxed(1);
    ++m_silentSeconds;
    ++m_quietSeconds;
    m_flushSeconds = m_writer->isFlushing() ? m_flushSeconds + 1 : 0;
    askWorker();
    if (m_state == State::Open && m_quietSeconds > kLostAfterSeconds) {
        closePort(QStringLiteral("прибор молчит больше %1 секунд").arg(kLostAfterSeconds));
    } else if (m_state == State::Waiting && --m_retrySeconds <= 0) {
        openPort();
    }
}

void Station::askWorker()
{
    m_workerSeconds = m_workerAnswered ? 0 : m_workerSeconds + 1;
    if (!m_workerAnswered) {
        return;
    }
    m_workerAnswered = false;
    Q_EMIT answerRequested();
}

bool Station::isHealthy() const
{
    return m_workerSeconds < kWorkerAnswerSeconds && m_flushSeconds < kFlushSeconds;
}

void Station::saveTick()
{
    const QDateTime now = m_now();
    // Restart the timer even if the interval is unchanged: after a tick that was handled late, the
    // timer would otherwise fire at the originally scheduled time, within the same second.
    if (m_saveTimer.isActive()) {
        m_saveTimer.start(nextTickDelayMs(now.time()));
    }
    // Like the terminal, which stops its save timer then: no file is created for a day without
    // readings.
    if (isMinuteMark(now.time()) && m_silentSeconds <= kLostAfterSeconds) {
        writeLine(now);
    }
}

void Station::writeLine(const QDateTime &now)
{
    m_minute = now;
    m_writer->DateTimeRecieve(now.toString(u"yyyy/MM/dd"), now.toString(u"hh:mm:ss"));
}

void Station::lineHandled(bool written)
{
    if (written) {
        Q_EMIT lineWritten();
    } else if (!m_writer->writeError().isEmpty()) {
        Q_EMIT lineNotWritten(m_minute, m_writer->writeError());
    } // otherwise there was no reading to write
}

} // namespace ork2
