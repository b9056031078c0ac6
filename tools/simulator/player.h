// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "options.h"
#include "pseudoterminal.h"
#include "scenario.h"
#include "terminallink.h"

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>

namespace ork2 {

// Plays a scenario on a pseudo-terminal. Requires an event loop; never blocks longer than the
// duration of one byte. A reading that does not fit into the line's buffer is dropped completely,
// unless the period is 0: then the player waits for the reader. Data from the reader is ignored.
class Player : public QObject
{
    Q_OBJECT

public:
    // Uses only the options period, delivery, count and linkPath.
    Player(std::unique_ptr<Scenario> scenario, const Options &options, QObject *parent = nullptr);

    void start();

Q_SIGNALS:
    // The pseudo-terminal can be opened. Emitted at the start and after each unplugging.
    void ready(const QString &path);
    // The scenario has ended, and the reader, if any, has read all data.
    void finished();
    // The player has stopped because of an error.
    void failed(const QString &reason);

private:
    using Clock = std::chrono::steady_clock;
    enum class State {
        Playing,
        AwaitingReader, // until all data has been read; then unplugging or the end
        Unplugged,
    };

    void resume();
    void play();
    [[nodiscard]] bool beginStep();
    void begin(const Transmission &transmission);
    void begin(const Silence &silence);
    void begin(const Unplugging &unplugging);
    [[nodiscard]] bool lineHasRoomFor(qsizetype size);
    [[nodiscard]] bool transmit();
    void awaitReader();
    void checkReader();
    [[nodiscard]] bool isRead();
    void handleReaderInput();
    [[nodiscard]] bool plug();
    void unplug(std::chrono::milliseconds duration);

    [[nodiscard]] bool waitsForReader() const
    {
        return m_period == std::chrono::milliseconds::zero();
    }

    std::unique_ptr<Scenario> m_scenario;
    std::chrono::milliseconds m_period;
    Delivery m_delivery;
    std::optional<int> m_left; // transmissions until the end

    PseudoTerminal m_terminal;
    std::optional<TerminalLink> m_link;
    std::unique_ptr<QSocketNotifier> m_requests;
    std::unique_ptr<QSocketNotifier> m_room;

    State m_state = State::Playing;
    QTimer m_timer;
    Clock::time_point m_due;     // of the next step
    QByteArray m_pending;        // not yet written to the line
    Clock::time_point m_byteDue; // when the transmission of the next pending byte is complete

    std::optional<std::chrono::milliseconds> m_unplugging; // after all data has been read
    qsizetype m_lastUnread = 0;
    int m_emptyChecks = 0;
    Clock::time_point m_lastProgress;
};

} // namespace ork2
