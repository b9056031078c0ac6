// SPDX-License-Identifier: GPL-3.0-or-later
#include "player.h"

#include "frames.h"

#include <algorithm>
#include <thread>
#include <tuple>
#include <utility>

namespace ork2 {

namespace {

using namespace std::chrono_literals;

constexpr int kBaudRate = 9600;
constexpr int kBitsPerByte = 10; // start bit, 8 data bits, stop bit
constexpr std::chrono::nanoseconds kByteTime{1'000'000'000LL * kBitsPerByte / kBaudRate};

constexpr qsizetype kLineCapacity = 4095; // bytes that a terminal buffers for its reader
constexpr int kStepsPerTurn = 64;         // per event loop iteration if the period is 0

constexpr auto kCheckInterval = 20ms;
constexpr int kChecksUntilRead = 3; // written bytes become visible with a delay
constexpr auto kReaderTimeout = 1s; // without progress

} // namespace

Player::Player(std::unique_ptr<Scenario> scenario, const Options &options, QObject *parent)
    : QObject(parent)
    , m_scenario(std::move(scenario))
    , m_period(options.period)
    , m_delivery(options.delivery)
    , m_left(options.count)
{
    if (!options.linkPath.isEmpty()) {
        m_link.emplace(options.linkPath);
    }
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &Player::resume);
}

void Player::start()
{
    if (plug()) {
        m_timer.start(0ms);
    }
}

void Player::resume()
{
    switch (m_state) {
    case State::Playing:
        play();
        return;
    case State::AwaitingReader:
        checkReader();
        return;
    case State::Unplugged:
        if (plug()) {
            play();
        }
        return;
    }
}

void Player::play()
{
    for (int step = 0; step < kStepsPerTurn; ++step) {
        if (!transmit()) {
            return;
        }
        const Clock::duration wait = m_due - Clock::now();
        if (wait > Clock::duration::zero()) {
            m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(wait));
            return;
        }
        if (!beginStep()) {
            return;
        }
    }
    m_timer.start(0ms);
}

// Returns false if play() must return.
bool Player::beginStep()
{
    const std::optional<Step> step = m_left == 0 ? std::nullopt : m_scenario->next();
    if (!step) {
        awaitReader();
        return false;
    }
    std::visit([this](const auto &kind) { begin(kind); }, *step);
    return m_state == State::Playing;
}

void Player::begin(const Transmission &transmission)
{
    const Clock::time_point now = Clock::now();
    m_due = std::max(m_due + m_period, now);
    if (m_left) {
        --*m_left;
    }
    if (!waitsForReader() && !lineHasRoomFor(transmission.bytes.size())) {
        return;
    }
    m_pending = transmission.bytes;
    m_byteDue = now + kByteTime;
}

void Player::begin(const Silence &silence)
{
    m_due = std::max(m_due + silence.duration, Clock::now());
}

void Player::begin(const Unplugging &unplugging)
{
    if (!waitsForReader()) {
        unplug(unplugging.duration);
        return;
    }
    m_unplugging = unplugging.duration;
    awaitReader();
}

bool Player::lineHasRoomFor(qsizetype size)
{
    return m_terminal.readerPresent() && m_terminal.unread() + size <= kLineCapacity;
}

// Returns true if nothing is pending. Otherwise the timer or the notifier calls play() again.
bool Player::transmit()
{
    if (m_pending.isEmpty()) {
        return true;
    }
    const bool byteWise = m_delivery == Delivery::Bytes;
    if (byteWise) {
        std::this_thread::sleep_until(m_byteDue);
    }
    const qsizetype written =
        m_terminal.write(QByteArrayView(m_pending).first(byteWise ? 1 : m_pending.size()));
    if (written < 0) {
        Q_EMIT failed(m_terminal.errorString());
        return false;
    }
    m_pending.remove(0, written);
    if (m_pending.isEmpty()) {
        return true;
    }
    if (written == 0 || !byteWise) {
        m_room->setEnabled(true);
        return false;
    }
    m_byteDue = std::max<Clock::time_point>(m_byteDue, Clock::now() - kByteTime) + kByteTime;
    m_timer.start(0ms);
    return false;
}

void Player::awaitReader()
{
    m_state = State::AwaitingReader;
    m_emptyChecks = 0;
    m_lastUnread = 0;
    m_lastProgress = Clock::now();
    checkReader();
}

void Player::checkReader()
{
    if (!isRead()) {
        m_timer.start(kCheckInterval);
        return;
    }
    if (m_unplugging) {
        unplug(*std::exchange(m_unplugging, std::nullopt));
    } else {
        Q_EMIT finished();
    }
}

bool Player::isRead()
{
    const qsizetype unread = m_terminal.unread();
    if (unread != std::exchange(m_lastUnread, unread)) {
        m_lastProgress = Clock::now();
    }
    m_emptyChecks = unread == 0 ? m_emptyChecks + 1 : 0;
    if (m_emptyChecks >= kChecksUntilRead) {
        return true;
    }
    return !waitsForReader()
        && (!m_terminal.readerPresent() || Clock::now() - m_lastProgress > kReaderTimeout);
}

bool Player::plug()
{
    if (!m_terminal.open()) {
        Q_EMIT failed(QStringLiteral("cannot open a pseudo-terminal: ") + m_terminal.errorString());
        return false;
    }
    m_requests = std::make_unique<QSocketNotifier>(m_terminal.descriptor(), QSocketNotifier::Read);
    connect(m_requests.get(), &QSocketNotifier::activated, this, &Player::handleReaderInput);
    m_room = std::make_unique<QSocketNotifier>(m_terminal.descriptor(), QSocketNotifier::Write);
    m_room->setEnabled(false);
    connect(m_room.get(), &QSocketNotifier::activated, this, [this] {
        m_room->setEnabled(false);
        m_timer.start(0ms);
    });

    if (m_link && !m_link->pointTo(m_terminal.path())) {
        Q_EMIT failed(m_link->errorString());
        return false;
    }
    m_state = State::Playing;
    m_due = Clock::now();
    Q_EMIT ready(m_terminal.path());
    return true;
}

void Player::handleReaderInput()
{
    m_terminal.drain();
    // Data not read by one reader must not be sent to the next one, unless the period is 0.
    if (!waitsForReader()) {
        std::ignore = m_terminal.readerPresent();
    }
}

void Player::unplug(std::chrono::milliseconds duration)
{
    m_state = State::Unplugged;
    if (m_link) {
        m_link->remove();
    }
    m_requests.reset();
    m_room.reset();
    m_terminal.close();
    m_timer.start(duration);
}

} // namespace ork2
