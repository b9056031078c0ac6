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

// Plays a scenario on a pseudo-terminal of its own. Needs an event loop; never waits for longer
// than the time of one byte. A reading that the line cannot take whole is dropped whole, unless
// the period is 0: then the player waits for the reader. What the reader sends is ignored.
class Player : public QObject
{
    Q_OBJECT

public:
    // Of the options it uses period, delivery, count and link path.
    Player(std::unique_ptr<Scenario> scenario, const Options &options, QObject *parent = nullptr);

    void start();

Q_SIGNALS:
    // There is a pseudo-terminal to open: at the start, and after each unplugging.
    void ready(const QString &path);
    // All is played, and taken by the reader if there is one who reads.
    void finished();
    // Nothing goes on after this.
    void failed(const QString &reason);

private:
    using Clock = std::chrono::steady_clock;
    enum class State {
        Playing,
        AwaitingReader, // for what is played to be taken, then unplugging or the end
        Unplugged,
    };

    void resume();
    void play();
    [[nodiscard]] bool beginStep();
    void begin(const Transmission &transmission);
    void begin(const Silence &silence);
    void begin(const Unplugging &unplugging);
    [[nodiscard]] bool lineTakes(qsizetype size);
    [[nodiscard]] bool transmit();
    void awaitReader();
    void lookForReader();
    [[nodiscard]] bool isTaken();
    void heedReader();
    [[nodiscard]] bool plugIn();
    void pullOut(std::chrono::milliseconds duration);

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
    QByteArray m_pending;        // begun and not yet on the line
    Clock::time_point m_byteDue; // when the next pending byte has passed the line

    std::optional<std::chrono::milliseconds> m_unplugging; // follows once the reader took all
    qsizetype m_lastUnread = 0;
    int m_emptyLooks = 0;
    Clock::time_point m_lastProgress;
};

} // namespace ork2
