// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "frames.h"
#include "portsearch.h"

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
inline constexpr int kRequestIntervalMs = 1000;
inline constexpr int kPlotIntervalMs = 10000;
inline constexpr int kLostAfterSeconds = 30; // lost from the next silent second on
// While the instrument stays lost, the loss is declared again each 25 s; 6 instead of 0 keeps the
// file writer from writing until a real frame resets the counter.
inline constexpr int kCounterAfterLoss = 6;
inline constexpr int kStoppedTextDelayMs = 1000;
inline constexpr int kControlPanelDelayMs = 100;
}

// The measurement: starts and stops it, watches whether the instrument still answers, turns decoded
// readings into what the window shows, feeds the charts each 10 s and gives the file writer its
// mark each minute. Published to the documents as "mainBackEnd". Main thread; its constructor
// builds the serial worker with its thread, the parser and the file writer, which live until the
// process ends.
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
    // Next width of the time window: 10 minutes, 1 hour, 3 hours, 10 minutes.
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
    // Another start and stop, without a caller; true stops and false starts, intentional: the
    // argument is the state that the switch leaves.
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
    QDateTime minTime(); // edges of the chart's time window, local time
    QDateTime maxTime();
    void setLogAxY(); // does nothing
    void removeGPoints();
    // The axes belong to the document until this object is destroyed, which deletes them later.
    void setLogAxisY(QLogValueAxis *newLogAxisY);
    void setlineAxisY(QValueAxis *newLineAxisY);

private Q_SLOTS:
    void on_error(QString err);
    void requestData();
    void plotGraph();
    bool comSearch();
    void timeToSaveData();

private:
    // Tests reach the objects that the constructor builds, and set the clock and the ports.
    friend class MainBackEndProbe;

    [[nodiscard]] bool comesTooLate() const;
    void startMeasurement();
    void stopMeasurement();
    void tellStopped();
    void declareLost();
    void blankError(QString &firstText, QString &secondText);

    bool m_workerRunning = false; // right after the start of the thread; kept, nothing reads it
    QString m_unitNumber;
    QString m_unitYear;
    QTimer *m_requestTimer = nullptr;
    QTimer *m_saveTimer = nullptr;
    QTimer *m_plotTimer = nullptr;
    bool m_measuring = false;
    QDateTime m_lastPollTime;      // of the latest watchdog tick; kept, nothing reads it
    double m_fLayerValue = 3000.0; // metres, as plotted; the constructor makes it 5000
    double m_sLayerValue = 3000.0;
    ork2::Channel m_chanelState = ork2::Channel::Main;
    QFont m_labelFont;         // kept; nothing reads it
    bool m_cloudError = false; // the last reading carried a code; kept, nothing reads it
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
