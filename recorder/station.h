// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "datafolder.h"

#include <QDateTime>
#include <QObject>
#include <QString>
#include <QTimer>
#include <QVariant>

#include <functional>
#include <optional>

class ComPort;
class QThread;
class convertData;
class datalogger;

namespace ork2 {

class PortCommands;

// If the worker does not answer for this time, it is stuck in the driver.
inline constexpr int kWorkerAnswerSeconds = 20;
// If a line is not on the disk after this time, the disk does not answer.
inline constexpr int kFlushSeconds = 60;
// How long the end of the program waits for the worker.
inline constexpr int kWorkerEndMs = 2000;

struct StationReading
{
    QDateTime at;
    QString first; // heights as digits in metres, as parsed
    QString second;
    QString channel; // "0" or "1"
};

// The measurement without a person: opens the port, writes a line per minute with the file writer
// of the terminal, closes a lost port and opens it again until it succeeds. Lives in the main
// thread; the serial worker runs in a thread of its own, which the destructor ends.
//
// A line is lost when its device disappears or cannot be opened, when no reading arrives for more
// than kLostAfterSeconds, or when the worker reports only other bytes. The port is then closed, so
// that the system can give the device its old name again.
class Station : public QObject
{
    Q_OBJECT

public:
    // port: a path, which may be a link; it is followed at each attempt.
    Station(QString port, const RecordingPlace &place, QObject *parent = nullptr);
    ~Station() override;
    Q_DISABLE_COPY_MOVE(Station)

    void start();
    void setPort(const QString &port);
    void setPlace(const RecordingPlace &place);
    // Receives the row of each line, also if the file could not be written. Empty: no rows.
    void setUploadTarget(const std::function<void(const QVariantList &)> &target);
    // Tries to open a lost port at once; call when its device appears.
    void openNow();

    // Closes the port and ends the worker. Returns false if it is stuck in the driver.
    bool end();

    [[nodiscard]] const std::optional<StationReading> &lastReading() const { return m_last; }
    // Why there are no readings, as of the last attempt; empty if there are.
    [[nodiscard]] QString trouble() const { return m_trouble; }
    // Returns whether the worker answers and the disk takes the lines.
    [[nodiscard]] bool isHealthy() const;

Q_SIGNALS:
    void portOpened(const QString &device);
    // Once for each loss. Why, in Russian, as part of a sentence.
    void lineLost(const QString &cause);
    // The first reading: since the start, or since a loss, whose last reading was at that time.
    void lineBack(const QDateTime &since);
    void lineWritten();
    void lineNotWritten(const QDateTime &minute, const QString &cause);
    // To the worker's thread.
    void openRequested(const QString &device);
    void closeRequested();
    void answerRequested();

private:
    // Simulates weeks within minutes, with its own clock and ticks.
    friend class StationProbe;

    enum class State { Waiting, Opening, Open, Closing };

    void connectObjects();
    void useWriter(datalogger *writer);
    void openPort();
    void opened(bool open, const QString &device, int error);
    void closePort(const QString &cause);
    void portClosed();
    void waitForRetry();
    void reportLost(const QString &cause);
    void takeHeights(const QString &first, const QString &second);
    void takeChannel(const QString &channel);
    void tick();
    void askWorker();
    void saveTick();
    void writeLine(const QDateTime &now);
    void lineHandled(bool written);
    [[nodiscard]] QString openFailure(const QString &device, int error) const;

    QString m_port;
    State m_state = State::Waiting;
    QString m_portText; // last text of the serial worker
    int m_failedAttempts = 0;
    int m_retrySeconds = 0;  // until the next attempt
    int m_quietSeconds = 0;  // since the port was opened, or since the last reading
    int m_silentSeconds = 0; // since the start, or since the last reading
    bool m_lost = false;
    QString m_trouble;
    QDateTime m_since; // the last reading before the loss, or the start
    StationReading m_incoming;
    std::optional<StationReading> m_last;
    QDateTime m_minute; // of the last line
    bool m_workerAnswered = true;
    int m_workerSeconds = 0; // without an answer
    int m_flushSeconds = 0;
    std::function<void(const QVariantList &)> m_uploadTarget;
    QTimer m_tickTimer;
    QTimer m_saveTimer;

    QDateTime (*m_now)() = &QDateTime::currentDateTime;
    QThread *m_workerThread = nullptr;
    ComPort *m_comPort = nullptr;
    PortCommands *m_commands = nullptr; // deleted by the thread, like the worker
    convertData *m_parser = nullptr;
    datalogger *m_writer = nullptr;
};

} // namespace ork2
