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

constexpr qsizetype kLineCapacity = 4095; // bytes that a terminal keeps for its reader
constexpr int kStepsPerTurn = 64;         // of the event loop, when playing flat out

constexpr auto kLookInterval = 20ms;
constexpr int kLooksUntilTaken = 3;  // written bytes become visible a moment later only
constexpr auto kReaderPatience = 1s; // without progress

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
    if (plugIn()) {
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
        lookForReader();
        return;
    case State::Unplugged:
        if (plugIn()) {
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

// False: play() is over for now.
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
    if (!waitsForReader() && !lineTakes(transmission.bytes.size())) {
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
        pullOut(unplugging.duration);
        return;
    }
    m_unplugging = unplugging.duration;
    awaitReader();
}

bool Player::lineTakes(qsizetype size)
{
    return m_terminal.readerPresent() && m_terminal.unread() + size <= kLineCapacity;
}

// True: nothing is pending. Otherwise the timer or the notifier will call again.
bool Player::transmit()
{
    if (m_pending.isEmpty()) {
        return true;
    }
    const bool byteWise = m_delivery == Delivery::Bytes;
    if (byteWise) {
        std::this_thread::sleep_until(m_byteDue);
    }
    const qsizetype taken =
        m_terminal.write(QByteArrayView(m_pending).first(byteWise ? 1 : m_pending.size()));
    if (taken < 0) {
        Q_EMIT failed(m_terminal.errorString());
        return false;
    }
    m_pending.remove(0, taken);
    if (m_pending.isEmpty()) {
        return true;
    }
    if (taken == 0 || !byteWise) {
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
    m_emptyLooks = 0;
    m_lastUnread = 0;
    m_lastProgress = Clock::now();
    lookForReader();
}

void Player::lookForReader()
{
    if (!isTaken()) {
        m_timer.start(kLookInterval);
        return;
    }
    if (m_unplugging) {
        pullOut(*std::exchange(m_unplugging, std::nullopt));
    } else {
        Q_EMIT finished();
    }
}

bool Player::isTaken()
{
    const qsizetype unread = m_terminal.unread();
    if (unread != std::exchange(m_lastUnread, unread)) {
        m_lastProgress = Clock::now();
    }
    m_emptyLooks = unread == 0 ? m_emptyLooks + 1 : 0;
    if (m_emptyLooks >= kLooksUntilTaken) {
        return true;
    }
    return !waitsForReader()
        && (!m_terminal.readerPresent() || Clock::now() - m_lastProgress > kReaderPatience);
}

bool Player::plugIn()
{
    if (!m_terminal.open()) {
        Q_EMIT failed(QStringLiteral("cannot open a pseudo-terminal: ") + m_terminal.errorString());
        return false;
    }
    m_requests = std::make_unique<QSocketNotifier>(m_terminal.descriptor(), QSocketNotifier::Read);
    connect(m_requests.get(), &QSocketNotifier::activated, this, &Player::heedReader);
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

void Player::heedReader()
{
    m_terminal.drain();
    // What a reader left behind must not wait for the next one; playing flat out loses nothing.
    if (!waitsForReader()) {
        std::ignore = m_terminal.readerPresent();
    }
}

void Player::pullOut(std::chrono::milliseconds duration)
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
