// SPDX-License-Identifier: GPL-3.0-or-later
#include "mainbackend.h"

#include "comport.h"
#include "connections.h"
#include "convertdata.h"
#include "datafolder.h"
#include "datalogger.h"
#include "frames.h"
#include "minutetick.h"
#include "readingkind.h"
#include "settingskeys.h"
#include "sharedvalues.h"
#include "timewindow.h"
#include "wiring.h"

#include <QDebug>
#include <QDesktopServices>
#include <QDir>
#include <QSerialPort>
#include <QThread>
#include <QUrl>

namespace {

constexpr double kNoValue = ork2::kNoValueHeight;

const QString kDashes = QStringLiteral("----");
const QString kStoppedText = QStringLiteral(" Статус: Прибор остановлен");
const QString kLostText = QStringLiteral(" Статус: Прибор отключен");

QTimer *makeTimer(QObject *parent, int intervalMs)
{
    auto *timer = new QTimer(parent);
    timer->setInterval(intervalMs);
    // A coarse timer may deviate by 5 % and so miss the first second of a minute.
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
    , m_chartName(ork2::firstTimeWindow().chartName)
    , m_workerThread(new QThread)
    , m_comPort(new ComPort)
    , m_convertData(new convertData)
    , m_datalogger(new datalogger)
{
    m_labelFont.setFamily(QStringLiteral("qrc:/settings/Fonts/Palantino/pala.ttf"));
    m_fLayerValue = kNoValue;
    m_sLayerValue = kNoValue;

    connect(m_requestTimer, &QTimer::timeout, this, &mainBackEnd::requestData);
    connect(m_plotTimer, &QTimer::timeout, this, &mainBackEnd::plotGraph);
    connect(m_saveTimer, &QTimer::timeout, this, &mainBackEnd::timeToSaveData);
    ork2::connectMeasurement({*this, *m_workerThread, *m_comPort, *m_convertData, *m_datalogger});
    ork2::startWorker(*m_workerThread, *m_comPort);
    m_workerRunning = m_workerThread->isRunning();
    qDebug() << "Thread ID" << m_comPort->thread();
    qDebug() << "Seriad port thread ID" << m_comPort->port().thread();

    showUnitYearNumber();
    updateComPortNumber();
    setXMinRange(ork2::firstTimeWindow().seconds);
}

mainBackEnd::~mainBackEnd()
{
    if (m_comPort != nullptr) {
        m_comPort->release();
    }
    if (m_logAxisY != nullptr) {
        m_logAxisY->deleteLater();
    }
    if (m_lineAxisY != nullptr) {
        m_lineAxisY->deleteLater();
    }
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
    reportStopped();
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
        reportStopped();
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

void mainBackEnd::reportStopped()
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
        reportLost();
    } else if (!m_saveTimer->isActive()) {
        m_saveTimer->start(ork2::kSaveIntervalMs);
    }
    Q_EMIT chanelLED(m_chanelState == ork2::Channel::Reserve);
}

void mainBackEnd::reportLost()
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
    // Restart the timer even if the interval is unchanged: after a tick that was handled late, the
    // timer would otherwise fire at the originally scheduled time, within the same second.
    if (m_saveTimer->isActive()) {
        m_saveTimer->start(ork2::nextTickDelayMs(now.time()));
    }
    if (ork2::isMinuteMark(now.time())) {
        Q_EMIT timeToData(now.toString(u"yyyy/MM/dd"), now.toString(u"hh:mm:ss"));
    }
}

void mainBackEnd::plotGraph()
{
    const auto nowMs = [this] { return static_cast<qreal>(m_now().toMSecsSinceEpoch()); };
    Q_EMIT dropFCloud(nowMs(), m_fLayerValue);
    Q_EMIT dropSCloud(nowMs(), m_sLayerValue);
    Q_EMIT updateVoidGraph();
}

// Readings that were still queued when the measurement was stopped must not be shown: nothing would
// clear them.
bool mainBackEnd::arrivesAfterStop() const
{
    return !m_measuring && (sender() == m_convertData || sender() == m_comPort);
}

void mainBackEnd::showTheCloud(QString fLayer, QString sLayer)
{
    if (arrivesAfterStop()) {
        return;
    }
    m_fLayerValue = ork2::plottedHeight(fLayer);
    m_sLayerValue = ork2::plottedHeight(sLayer);
    switch (ork2::readingKind(m_fLayerValue, m_sLayerValue)) {
    case ork2::ReadingKind::Measured:
        m_cloudError = false;
        Q_EMIT noError();
        break;
    case ork2::ReadingKind::NoFlash:
        blankError(fLayer, sLayer);
        Q_EMIT noFlashError();
        break;
    case ork2::ReadingKind::DataError:
        blankError(fLayer, sLayer);
        Q_EMIT noDataError();
        break;
    case ork2::ReadingKind::NotReady:
        blankError(fLayer, sLayer); // intentional: no signal, the banner keeps its text
        break;
    case ork2::ReadingKind::Other:
        break;
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
    if (const auto channel = ork2::channelOf(chCloud)) {
        m_chanelState = *channel;
    }
}

void mainBackEnd::connectionLed(bool ok)
{
    if (arrivesAfterStop()) {
        return;
    }
    Q_EMIT connectionLED(ok);
    if (!ok) {
        // The timers keep running and the start button stays checked: the user decides how to
        // proceed.
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
        // One timer per message, not deleted after its timeout: messages while stopped are rare.
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

bool mainBackEnd::comSearch()
{
    const std::optional<QString> found = ork2::instrumentPort(m_presentPorts());
    Q_EMIT plugPlayComSettings(
        QSerialPort::Baud9600, 0, found ? *found : ork2::storedText(ork2::kPortToOpen));
    return found.has_value();
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
    QDesktopServices::openUrl(QUrl::fromLocalFile(QDir(ork2::openedDataFolder()).absolutePath()));
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
    if (const auto next = ork2::nextTimeWindow(m_xMinRange)) {
        setXMinRange(next->seconds);
        setChartName(next->chartName);
        Q_EMIT updateVoidGraph();
    }
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
