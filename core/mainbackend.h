// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "frames.h"
#include "portsearch.h"
#include "watchtiming.h"

#include <QDateTime>
#include <QFont>
#include <QLogValueAxis>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QTimer>
#include <QValueAxis>

class ComPort;
class QThread;
class convertData;
class datalogger;

namespace ork2 {
inline constexpr int kPlotIntervalMs = 10000;
// While the connection remains lost, the loss is reported again every 25 s. The value is not 0, so
// that the file writer does not write until a frame resets the counter.
inline constexpr int kCounterAfterLoss = 6;
inline constexpr int kStoppedTextDelayMs = 1000;
inline constexpr int kControlPanelDelayMs = 100;
}

// Controls the measurement: starts and stops it, detects the loss of the instrument, converts
// parsed readings to the texts shown in the window, adds a point to the charts every 10 s and
// notifies the file writer every minute. Available in the QML documents as "mainBackEnd". Lives in
// the main thread. The constructor creates the serial worker with its thread, the parser and the
// file writer, which live until the process exits.
class mainBackEnd : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QLogValueAxis *logAxisY READ logAxisY WRITE setLogAxisY NOTIFY logAxisYChanged)
    Q_PROPERTY(QValueAxis *lineAxisY READ lineAxisY WRITE setlineAxisY NOTIFY lineAxisYChanged)
    Q_PROPERTY(
        bool enabledButton READ enabledButton WRITE setEnabledButton NOTIFY enabledButtonChanged)
    Q_PROPERTY(int xMinRange READ xMinRange WRITE setXMinRange NOTIFY xMinRangeChanged)
    Q_PROPERTY(QString chartName READ chartName WRITE setChartName NOTIFY chartNameChanged)

public:
    explicit mainBackEnd(QObject *parent = nullptr);
    ~mainBackEnd() override;
    Q_DISABLE_COPY_MOVE(mainBackEnd)

    [[nodiscard]] QLogValueAxis *logAxisY() const;
    [[nodiscard]] QValueAxis *lineAxisY() const;
    [[nodiscard]] bool enabledButton() const { return m_enabledButton; }
    void setEnabledButton(bool enabled);
    [[nodiscard]] int xMinRange() const { return m_xMinRange; }
    void setXMinRange(int seconds);
    [[nodiscard]] QString chartName() const { return m_chartName; }
    void setChartName(const QString &name);

    // Start and stop a measurement; only the start opens the port.
    Q_INVOKABLE void enButton();
    Q_INVOKABLE void disableButton();
    // Switches to the next time window: 10 minutes, 1 hour, 3 hours, 10 minutes.
    Q_INVOKABLE void changeRangeX();

Q_SIGNALS:
    void savesettings(
        QString name, int baudrate, int databits, int parity, int stopbits, int flowcontrol);
    void writeData(QString, QByteArray); // declared, never emitted
    void sendCounter(QString);           // text of the status line
    void startButtonClicked();
    void stopButtonClicked();
    void plugPlayComSettings(int, int, QString); // baud, parity, port name
    void firstCloudAlt(QString);
    void noFlashError();
    void noDataError();
    void noReadyError(); // declared, never emitted; the main document has a handler
    void noError();
    void secondCloudAlt(QString);
    void clearGraphData();
    void chanelLED(bool);
    void dropFCloud(qreal, qreal); // milliseconds since the epoch, metres
    void dropSCloud(qreal, qreal);
    void timeToData(QString, QString); // date "yyyy/MM/dd", time "hh:mm:ss"
    void sendUnitYearNumber(QString, QString);
    void openControlPanel();
    void updateMyTime(); // declared, never emitted
    void connectionLED(bool);
    void dataLED(bool);
    void serverLED(bool);
    void sendActualPortNumber(QString);
    void connectionErrorClouds(QString, QString);
    void updateVoidGraph();
    void lineAxisYChanged();
    void logAxisYChanged();
    void enabledButtonChanged();
    void xMinRangeChanged();
    void chartNameChanged();

public Q_SLOTS:
    void WriteToPort(QString sensor, QByteArray data); // does nothing
    // Alternative start and stop, not called. Intentional: true stops and false starts.
    void startButtonSB(bool state);
    void showTheCloud(QString fLayer, QString sLayer);
    void showTheCloudChanel(QString chCloud);
    void on_action_openDataFolder_triggered();
    void saveUnitYearNumber(QString uNumber, QString uYear);
    void saveComPortNumber(QString pNumber);
    void showUnitYearNumber();
    void updateComPortNumber();
    void openCP();
    void connectionLed(bool ok);
    void severLed(bool ok);
    void dataLed(bool ok);
    QDateTime minTime(); // bounds of the chart's time window, local time
    QDateTime maxTime();
    void setLogAxY(); // does nothing
    void removeGPoints();
    // The document owns the axes; the destructor of this class calls deleteLater() on them.
    void setLogAxisY(QLogValueAxis *newLogAxisY);
    void setlineAxisY(QValueAxis *newLineAxisY);

private Q_SLOTS:
    void on_error(QString err);
    void requestData();
    void plotGraph();
    bool comSearch();
    void timeToSaveData();

private:
    // Tests access the objects created by the constructor, and set the clock and the ports.
    friend class MainBackEndProbe;

    [[nodiscard]] bool arrivesAfterStop() const;
    void startMeasurement();
    void stopMeasurement();
    void reportStopped();
    void reportLost();
    void blankError(QString &firstText, QString &secondText);

    bool m_workerRunning = false; // right after the start of the thread; not used
    QString m_unitNumber;
    QString m_unitYear;
    QTimer *m_requestTimer = nullptr;
    QTimer *m_saveTimer = nullptr;
    QTimer *m_plotTimer = nullptr;
    bool m_measuring = false;
    QDateTime m_lastPollTime;      // of the last watchdog tick; not used
    double m_fLayerValue = 3000.0; // metres, as plotted; the constructor sets 5000
    double m_sLayerValue = 3000.0;
    ork2::Channel m_chanelState = ork2::Channel::Main;
    QFont m_labelFont;         // not used
    bool m_cloudError = false; // the last reading was an error code; not used
    QPointer<QLogValueAxis> m_logAxisY;
    QPointer<QValueAxis> m_lineAxisY;
    bool m_enabledButton = false;
    int m_xMinRange = 0; // seconds
    QString m_chartName;

    QDateTime (*m_now)() = &QDateTime::currentDateTime;
    QList<ork2::PresentPort> (*m_presentPorts)() = &ork2::presentPorts;
    QThread *m_workerThread = nullptr;
    QPointer<ComPort> m_comPort;
    convertData *m_convertData = nullptr;
    datalogger *m_datalogger = nullptr;
};
