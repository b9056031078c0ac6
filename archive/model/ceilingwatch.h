// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <optional>

namespace ork2 {

inline constexpr int kSilenceSeconds = 180; // without a line

struct WatchSettings
{
    bool enabled = false;
    QList<int> thresholds{200, 100, 60}; // metres
    int hysteresis = 30;                 // metres above a threshold at which its alarm ends
};

struct WatchEvent
{
    enum class Kind { Below, Above, Silence, Resumed, Acknowledged };

    Kind kind = Kind::Below;
    qint64 time = 0;   // seconds since the epoch
    int threshold = 0; // metres; for Below and Above
    int height = 0;    // metres, 0 for no cloud; for Below and Above
};

// Decides when the lowest base passes a threshold and when the instrument is silent. No thread
// affinity, no clock of its own.
class CeilingWatch
{
public:
    // Starts again without alarms; silence is measured from now at the earliest.
    void start(const WatchSettings &settings, qint64 now);

    // A sample that is not newer than the last one is ignored. A code or an unreadable height
    // changes no alarm of a threshold.
    [[nodiscard]] QList<WatchEvent> add(const Sample &sample);
    // Call every few seconds.
    [[nodiscard]] QList<WatchEvent> tick(qint64 now);

    // The lowest threshold below which the base is, and since when.
    [[nodiscard]] std::optional<WatchEvent> low() const;
    // Since when there has been no line, if it is too long.
    [[nodiscard]] std::optional<WatchEvent> silence() const;

private:
    struct Threshold
    {
        int metres;
        std::optional<WatchEvent> alarm;
    };

    WatchSettings m_settings;
    QList<Threshold> m_thresholds; // descending
    qint64 m_lastSample = 0;       // 0: none yet
    qint64 m_quietSince = 0;       // the last sample or the start
    std::optional<WatchEvent> m_silence;
};

} // namespace ork2
