// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <chrono>
#include <optional>
#include <variant>

namespace ork2 {

// Sent at once; takes one period. Usually a reading, but any bytes are allowed.
struct Transmission
{
    QByteArray bytes;

    friend bool operator==(const Transmission &, const Transmission &) = default;
};

// A pause in addition to the period.
struct Silence
{
    std::chrono::milliseconds duration;

    friend bool operator==(const Silence &, const Silence &) = default;
};

// The cable is unplugged and is plugged in again after the duration.
struct Unplugging
{
    std::chrono::milliseconds duration;

    friend bool operator==(const Unplugging &, const Unplugging &) = default;
};

using Step = std::variant<Transmission, Silence, Unplugging>;

// The steps of a simulated instrument, independent of the line and the clock.
class Scenario
{
public:
    Scenario() = default;
    Q_DISABLE_COPY_MOVE(Scenario)
    virtual ~Scenario() = default;

    // Returns std::nullopt at the end of the scenario.
    [[nodiscard]] virtual std::optional<Step> next() = 0;
};

} // namespace ork2
