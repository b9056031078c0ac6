// SPDX-License-Identifier: GPL-3.0-or-later
#include "mainbackend.h"

#include "comport.h"
#include "convertdata.h"
#include "datalogger.h"
#include "frames.h"
#include "settingskeys.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QSerialPort>
#include <QSerialPortInfo>
#include <QThread>
#include <QUrl>

#include <atomic>
#include <cmath>
#include <memory>

namespace {

constexpr double kNoValue = ork2::kNoValueHeight;
constexpr double kAboveReadings = ork2::kNoValueHeight + 1; // heights below this are readings
constexpr auto kReleaseTime = std::chrono::milliseconds(500);
constexpr quint16 kAdapterIdBits = 0x6001;

const QString kDashes = QStringLiteral("----");
const QString kStoppedText = QStringLiteral(" Статус: Прибор остановлен");
const QString kLostText = QStringLiteral(" Статус: Прибор отключен");
const QString kTenMinutesName = QStringLiteral("Высота нижней границы облачности (10 минут)");
const QString kOneHourName = QStringLiteral("Высота нижней границы облачности (1 час)");
const QString kThreeHoursName = QStringLiteral("Высота нижней границы облачности (3 часа)");

QTimer *makeTimer(QObject *parent, int intervalMs)
{
    auto *timer = new QTimer(parent);
    timer->setInterval(intervalMs);
    // A coarse timer may drift by 5 % and so step over the one second of a minute that counts.
    timer->setTimerType(Qt::PreciseTimer);
    return timer;
}

} // namespace

mainBackEnd::mainBackEnd(QObject *parent)
    : QObject(parent)
    , m_unitNumber(ork2::storedText(ork2::kUnitNumber))
    , m_unitYear(ork2::storedText(ork2::kUnitYear))
    , m_requestTimer(makeTimer(this, ork2::kRequestIntervalMs))
    , m_saveTimer(makeTimer(this, ork2::kSaveIntervalMs))
    , m_plotTimer(makeTimer(this, ork2::kPlotIntervalMs))
    , m_lastPollTime(QDateTime::currentDateTime())
    , m_chartName(kTenMinutesName)
    , m_workerThread(new QThread)
    , m_comPort(new ComPort)
    , m_convertData(new convertData)
    , m_datalogger(new datalogger)
{
    m_labelFont.setFamily(QStringLiteral("qrc:/settings/Fonts/Palantino/pala.ttf"));
    m_fLayerValue = kNoValue;
    m_sLayerValue = kNoValue;

    connectObjects();
    m_comPort->moveToThread(m_workerThread);
    m_comPort->port().moveToThread(m_workerThread);
    m_comPort->clearReceiveBuffer();
    m_workerThread->start();
    m_workerRunning = m_workerThread->isRunning();
    qDebug() << "Thread ID" << m_comPort->thread();
    qDebug() << "Seriad port thread ID" << m_comPort->port().thread();

    showUnitYearNumber();
    updateComPortNumber();
    setXMinRange(ork2::kTenMinutes);
}

mainBackEnd::~mainBackEnd()
{
    releasePort();
    if (m_logAxisY != nullptr) {
        m_logAxisY->deleteLater();
    }
    if (m_lineAxisY != nullptr) {
        m_lineAxisY->deleteLater();
    }
}

// The worker's thread is left running, but the port is closed: an open port leaves its lock file
// behind, which keeps other users' programs from the port. A worker that hangs in its driver is not
// waited for. One that is behind skips what it was still told: each opening waits for the disk.
void mainBackEnd::releasePort()
{
    if (m_comPort == nullptr) {
        return;
    }
    QCoreApplication::removePostedEvents(m_comPort, QEvent::MetaCall);
    const auto released = std::make_shared<std::atomic_bool>(false);
    QMetaObject::invokeMethod(m_comPort, [port = m_comPort.data(), released] {
        port->DisconnectPort();
        *released = true;
    });
    const QDeadlineTimer deadline(kReleaseTime);
    while (!*released && !deadline.hasExpired()) {
        QThread::msleep(1);
    }
}

// The order of the rows is the order of delivery where one signal has two receivers: a reading
// reaches this object before the file writer, a channel state the file writer before this object.
void mainBackEnd::connectObjects()
{
    connect(m_requestTimer, &QTimer::timeout, this, &mainBackEnd::requestData);
    connect(m_plotTimer, &QTimer::timeout, this, &mainBackEnd::plotGraph);
    connect(m_workerThread, SIGNAL(finished()), m_workerThread, SLOT(deleteLater()));
    connect(m_comPort, SIGNAL(error_(QString)), this, SLOT(on_error(QString)));
    connect(m_workerThread, SIGNAL(started()), m_comPort, SLOT(process_Port()));
    connect(m_comPort, SIGNAL(finished_Port()), m_workerThread, SLOT(quit()));
    connect(m_workerThread, SIGNAL(finished()), m_comPort, SLOT(deleteLater()));
    connect(m_comPort, SIGNAL(finished_Port()), m_workerThread, SLOT(deleteLater()));
    connect(this, SIGNAL(savesettings(QString, int, int, int, int, int)), m_comPort,
        SLOT(Write_Settings_Port(QString, int, int, int, int, int)));
    connect(this, SIGNAL(plugPlayComSettings(int, int, QString)), m_comPort,
        SLOT(ComPortSettings(int, int, QString)));
    connect(m_comPort, SIGNAL(outPort(QString)), this, SLOT(on_error(QString)));
    connect(m_comPort, SIGNAL(statusBarMsg(QString)), this, SLOT(on_error(QString)));
    connect(this, SIGNAL(startButtonClicked()), m_comPort, SLOT(ConnectPort()));
    connect(this, SIGNAL(stopButtonClicked()), m_comPort, SLOT(DisconnectPort()));
    connect(m_comPort, SIGNAL(readyToShowClouds(QByteArray)), m_convertData,
        SLOT(parseCloudData(QByteArray)));
    connect(m_comPort, SIGNAL(connectLED(bool)), this, SLOT(connectionLed(bool)));
    connect(m_datalogger, SIGNAL(dataLedStatus(bool)), this, SLOT(dataLed(bool)));
    connect(m_convertData, SIGNAL(readyToShowClouds(QString, QString)), this,
        SLOT(showTheCloud(QString, QString)));
    connect(this, SIGNAL(connectionErrorClouds(QString, QString)), this,
        SLOT(showTheCloud(QString, QString)));
    connect(m_convertData, SIGNAL(readyToShowClouds(QString, QString)), m_datalogger,
        SLOT(DataCloudRecieved(QString, QString)));
    connect(m_saveTimer, &QTimer::timeout, this, &mainBackEnd::timeToSaveData);
    connect(this, SIGNAL(timeToData(QString, QString)), m_datalogger,
        SLOT(DateTimeRecieve(QString, QString)));
    connect(m_convertData, SIGNAL(readyToShowCloudChanel(QString)), m_datalogger,
        SLOT(DataCloudChanel(QString)));
    connect(m_convertData, SIGNAL(readyToShowCloudChanel(QString)), this,
        SLOT(showTheCloudChanel(QString)));
}

QLogValueAxis *mainBackEnd::logAxisY() const
{
    qDebug() << "readLogAx" << m_logAxisY;
    return m_logAxisY;
}

QValueAxis *mainBackEnd::lineAxisY() const
{
    qDebug() << "readLineAx" << m_lineAxisY;
    return m_lineAxisY;
}

void mainBackEnd::setLogAxisY(QLogValueAxis *newLogAxisY)
{
    if (newLogAxisY == nullptr) {
        qDebug() << "newLogAxisY == NULL";
    } else if (newLogAxisY != m_logAxisY) {
        m_logAxisY = newLogAxisY;
        qDebug() << "setLogAx" << m_logAxisY;
        Q_EMIT logAxisYChanged();
    }
}

void mainBackEnd::setlineAxisY(QValueAxis *newLineAxisY)
{
    if (newLineAxisY == nullptr) {
        qDebug() << "newLineAxisY == NULL";
    } else if (newLineAxisY != m_lineAxisY) {
        m_lineAxisY = newLineAxisY;
        qDebug() << "setLineAx" << m_lineAxisY;
        Q_EMIT lineAxisYChanged();
    }
}

void mainBackEnd::setEnabledButton(bool enabled)
{
    if (m_enabledButton == enabled) {
        return;
    }
    m_enabledButton = enabled;
    qDebug() << enabled;
    Q_EMIT enabledButtonChanged();
}

void mainBackEnd::setXMinRange(int seconds)
{
    if (m_xMinRange == seconds) {
        return;
    }
    m_xMinRange = seconds;
    Q_EMIT xMinRangeChanged();
}

void mainBackEnd::setChartName(const QString &name)
{
    if (m_chartName == name) {
        return;
    }
    m_chartName = name;
    Q_EMIT chartNameChanged();
}

void mainBackEnd::enButton()
{
    qDebug() << "Запускаем таймер";
    startMeasurement();
}

void mainBackEnd::startMeasurement()
{
    qDebug() << "Порт: " << currentPortName;
    Q_EMIT savesettings(currentPortName, QSerialPort::Baud9600, QSerialPort::Data8,
        QSerialPort::NoParity, QSerialPort::OneStop, QSerialPort::NoFlowControl);
    m_datalogger->awaitReading();
    Q_EMIT startButtonClicked();
    setEnabledButton(true);
    m_requestTimer->start();
    m_plotTimer->start();
    m_saveTimer->start(ork2::kSaveIntervalMs);
    m_measuring = true;
}

void mainBackEnd::disableButton()
{
    stopMeasurement();
    tellStopped();
    m_measuring = false;
    m_fLayerValue = kNoValue;
    m_sLayerValue = kNoValue;
}

void mainBackEnd::startButtonSB(bool state)
{
    m_measuring = state;
    if (state) {
        stopMeasurement();
        Q_EMIT clearGraphData();
        tellStopped();
        m_measuring = false;
    } else {
        qDebug() << "Запускаем таймер";
        comSearch();
        startMeasurement();
    }
}

void mainBackEnd::stopMeasurement()
{
    qDebug() << "Таймер остановлен";
    m_requestTimer->stop();
    m_plotTimer->stop();
    m_saveTimer->stop();
    Q_EMIT stopButtonClicked();
    setEnabledButton(false);
}

void mainBackEnd::tellStopped()
{
    Q_EMIT sendCounter(kStoppedText);
    Q_EMIT firstCloudAlt(kDashes);
    Q_EMIT secondCloudAlt(kDashes);
    Q_EMIT connectionLED(false);
    Q_EMIT serverLED(false);
    Q_EMIT dataLED(false);
}

void mainBackEnd::requestData()
{
    const QDateTime now = m_now();
    if (m_lastPollTime < now) {
        m_lastPollTime = now;
    }
    const int silentSeconds = noReplyCounter.fetchAndAddRelaxed(1) + 1;
    if (silentSeconds > ork2::kLostAfterSeconds) {
        declareLost();
    } else if (!m_saveTimer->isActive()) {
        m_saveTimer->start(ork2::kSaveIntervalMs);
    }
    Q_EMIT chanelLED(m_chanelState != 0);
}

void mainBackEnd::declareLost()
{
    Q_EMIT connectionLED(false);
    Q_EMIT connectionErrorClouds(ork2::kNoValueText.toString(), ork2::kNoValueText.toString());
    Q_EMIT sendCounter(kLostText);
    m_saveTimer->stop();
    Q_EMIT dataLED(false);
    noReplyCounter.storeRelaxed(ork2::kCounterAfterLoss);
}

void mainBackEnd::timeToSaveData()
{
    const QDateTime now = m_now();
    keepTickWithinSecond(now.time());
    if (now.time().second() == 0) {
        Q_EMIT timeToData(now.toString(u"yyyy/MM/dd"), now.toString(u"hh:mm:ss"));
    }
}

// A tick near the turn of a second may fall on either side of it, and the clock is slewed against
// the timer over the months: some minute would then get two marks or none. A tick may come late,
// but not early, so most of the second lies behind it.
void mainBackEnd::keepTickWithinSecond(QTime now)
{
    constexpr int kAim = 300;
    constexpr int kTolerance = 200;
    const bool near = qAbs(now.msec() - kAim) <= kTolerance;
    const int interval = near ? ork2::kSaveIntervalMs : ork2::kSaveIntervalMs + kAim - now.msec();
    // Started anew even when the interval stays: after a tick that a busy program met late, the
    // timer would fire at the moment it had planned before, within the same second.
    if (m_saveTimer->isActive()) {
        m_saveTimer->start(interval);
    }
}

void mainBackEnd::plotGraph()
{
    const auto nowMs = [this] { return static_cast<qreal>(m_now().toMSecsSinceEpoch()); };
    Q_EMIT dropFCloud(nowMs(), m_fLayerValue);
    Q_EMIT dropSCloud(nowMs(), m_sLayerValue);
    Q_EMIT updateVoidGraph();
}

// What was on its way from the line when the measurement was stopped: nothing would ever take it
// off the window again.
bool mainBackEnd::comesTooLate() const
{
    return !m_measuring && (sender() == m_convertData || sender() == m_comPort);
}

void mainBackEnd::showTheCloud(QString fLayer, QString sLayer)
{
    if (comesTooLate()) {
        return;
    }
    // A corrupted digit makes a text that is no number, hence 0, hence no value.
    const auto height = [](const QString &text) {
        const double metres = text.toDouble();
        // "nan " and "inf " are converted without complaint, but are no heights either.
        return metres == 0.0 || !std::isfinite(metres) ? kNoValue : metres;
    };
    m_fLayerValue = height(fLayer);
    m_sLayerValue = height(sLayer);
    if (m_fLayerValue == ork2::kNoFlashCode) {
        if (m_sLayerValue == ork2::kNoFlashCode) {
            blankError(fLayer, sLayer);
            Q_EMIT noFlashError();
        }
    } else if (m_fLayerValue == ork2::kDataErrorCode) {
        if (m_sLayerValue == ork2::kDataErrorCode) {
            blankError(fLayer, sLayer);
            Q_EMIT noDataError();
        }
    } else if (m_fLayerValue == ork2::kNotReadyCode) {
        if (m_sLayerValue == ork2::kNotReadyCode) {
            blankError(fLayer, sLayer); // no signal for this code, and that is meant
        }
    } else if (m_fLayerValue < kAboveReadings && m_sLayerValue < kAboveReadings) {
        m_cloudError = false;
        Q_EMIT noError();
    }
    Q_EMIT firstCloudAlt(fLayer);
    Q_EMIT secondCloudAlt(sLayer);
}

void mainBackEnd::blankError(QString &firstText, QString &secondText)
{
    m_cloudError = true;
    firstText = kDashes;
    secondText = kDashes;
}

void mainBackEnd::showTheCloudChanel(QString chCloud)
{
    if (chCloud == u"0") {
        m_chanelState = 0;
    } else if (chCloud == u"1") {
        m_chanelState = 1;
    }
}

void mainBackEnd::connectionLed(bool ok)
{
    if (comesTooLate()) {
        return;
    }
    Q_EMIT connectionLED(ok);
    if (!ok) {
        // The timers run on and the start button stays checked: the user decides what is next.
        Q_EMIT stopButtonClicked();
        Q_EMIT sendCounter(kLostText);
    }
}

void mainBackEnd::severLed(bool ok)
{
    Q_EMIT serverLED(ok);
}

void mainBackEnd::dataLed(bool ok)
{
    Q_EMIT dataLED(ok);
}

void mainBackEnd::on_error(QString err)
{
    const QString stamp = m_now().toString(u"hh:mm:ss.zzz");
    Q_EMIT sendCounter(QStringLiteral("[%1]:\t").arg(stamp) + err);
    if (!m_measuring) {
        // One timer a message, kept after it fired: messages while stopped are rare.
        auto *timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] { Q_EMIT sendCounter(kStoppedText); });
        timer->start(ork2::kStoppedTextDelayMs);
    }
    qDebug() << "cpp: Msg: " << err;
}

void mainBackEnd::openCP()
{
    auto *timer = new QTimer(this);
    timer->setSingleShot(true);
    connect(
        timer, &QTimer::timeout, this, [this] { Q_EMIT openControlPanel(); }, Qt::DirectConnection);
    timer->start(ork2::kControlPanelDelayMs);
}

QList<mainBackEnd::PresentPort> mainBackEnd::portsOfThisMachine()
{
    QList<PresentPort> present;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        present << PresentPort{port.portName(), port.productIdentifier()};
    }
    return present;
}

bool mainBackEnd::comSearch()
{
    int candidates = 0;
    QString name;
    const auto ports = m_presentPorts();
    for (const PresentPort &port : ports) {
        // One common bit is enough, and that is meant: adapters of many makers qualify.
        if ((port.productId & kAdapterIdBits) != 0) {
            ++candidates;
            name = port.name;
        }
    }
    const bool found = candidates == 1;
    if (!found) {
        name = ork2::storedText(ork2::kPortToOpen);
    }
    Q_EMIT plugPlayComSettings(QSerialPort::Baud9600, 0, name);
    return found;
}

void mainBackEnd::saveUnitYearNumber(QString uNumber, QString uYear)
{
    m_unitNumber = uNumber;
    m_unitYear = uYear;
    QSettings store = ork2::settingsStore();
    ork2::storeText(store, ork2::kUnitNumber, m_unitNumber);
    ork2::storeText(store, ork2::kUnitYear, m_unitYear);
    store.sync();
    Q_EMIT sendUnitYearNumber(m_unitNumber, m_unitYear);
}

void mainBackEnd::showUnitYearNumber()
{
    m_unitNumber = ork2::storedText(ork2::kUnitNumber);
    m_unitYear = ork2::storedText(ork2::kUnitYear);
    qDebug() << "C++: Unit number: " << m_unitNumber;
    qDebug() << "C++: Unit year: " << m_unitYear;
    Q_EMIT sendUnitYearNumber(m_unitNumber, m_unitYear);
}

void mainBackEnd::saveComPortNumber(QString pNumber)
{
    currentPortName = pNumber;
    QSettings store = ork2::settingsStore();
    ork2::storeText(store, ork2::kPortToShow, currentPortName);
    store.sync();
}

void mainBackEnd::updateComPortNumber()
{
    currentPortName = ork2::storedText(ork2::kPortToShow);
    qDebug() << "C++: Com port: " << currentPortName;
    Q_EMIT sendActualPortNumber(currentPortName);
}

void mainBackEnd::on_action_openDataFolder_triggered()
{
    const QString namePath = ork2::storedText(ork2::kNamePath);
    const bool ownFolder = namePath.startsWith(ork2::kOwnFolderMark);
    const QString folder = ownFolder
        ? QCoreApplication::applicationDirPath() + QStringLiteral("/Data")
        : namePath + QStringLiteral("ORK2/") + QStringLiteral("Data/");
    QDesktopServices::openUrl(QUrl::fromLocalFile(QDir(folder).absolutePath()));
}

QDateTime mainBackEnd::minTime()
{
    return m_now().addSecs(-m_xMinRange);
}

QDateTime mainBackEnd::maxTime()
{
    return m_now();
}

void mainBackEnd::changeRangeX()
{
    switch (m_xMinRange) {
    case ork2::kTenMinutes:
        showRange(ork2::kOneHour, kOneHourName);
        break;
    case ork2::kOneHour:
        showRange(ork2::kThreeHours, kThreeHoursName);
        break;
    case ork2::kThreeHours:
        showRange(ork2::kTenMinutes, kTenMinutesName);
        break;
    default:
        break;
    }
}

void mainBackEnd::showRange(int seconds, const QString &name)
{
    setXMinRange(seconds);
    setChartName(name);
    Q_EMIT updateVoidGraph();
}

void mainBackEnd::removeGPoints()
{
    Q_EMIT clearGraphData();
}

void mainBackEnd::WriteToPort(QString sensor, QByteArray data)
{
    Q_UNUSED(sensor)
    Q_UNUSED(data)
}

void mainBackEnd::setLogAxY()
{ }
