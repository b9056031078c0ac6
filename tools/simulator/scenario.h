// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QtGlobal>

#include <chrono>
#include <optional>
#include <variant>

namespace ork2 {

// Sent in one go; takes one period. Usually a reading, but any bytes may do.
struct Transmission
{
    QByteArray bytes;

    friend bool operator==(const Transmission &, const Transmission &) = default;
};

// A pause on top of the period.
struct Silence
{
    std::chrono::milliseconds duration;

    friend bool operator==(const Silence &, const Silence &) = default;
};

// The instrument's cable is pulled and comes back after the duration.
struct Unplugging
{
    std::chrono::milliseconds duration;

    friend bool operator==(const Unplugging &, const Unplugging &) = default;
};

using Step = std::variant<Transmission, Silence, Unplugging>;

// What an instrument does, step by step. Knows neither line nor clock.
class Scenario
{
public:
    Scenario() = default;
    Q_DISABLE_COPY_MOVE(Scenario)
    virtual ~Scenario() = default;

    // None: the scenario is over.
    [[nodiscard]] virtual std::optional<Step> next() = 0;
};

} // namespace ork2
