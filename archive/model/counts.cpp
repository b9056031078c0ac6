// SPDX-License-Identifier: GPL-3.0-or-later
#include "counts.h"

namespace ork2 {

namespace {

constexpr std::size_t kHeights = 10000; // 0 to 9999 m

// The number of minutes with each height: faster than sorting a year.
class HeightHistogram
{
public:
    void add(LayerValue value)
    {
        if (value.isHeight()) {
            ++m_minutes.at(static_cast<std::size_t>(value.number()));
            ++m_total;
        }
    }

    [[nodiscard]] LayerCounts counts() const
    {
        LayerCounts counts;
        counts.minutes = m_total;
        if (m_total > 0) {
            counts.lowest = heightOfRank(0);
            counts.median = heightOfRank((m_total - 1) / 2);
            counts.highest = heightOfRank(m_total - 1);
        }
        return counts;
    }

private:
    [[nodiscard]] int heightOfRank(qint64 rank) const
    {
        std::size_t height = 0;
        for (qint64 passed = m_minutes[0]; passed <= rank; passed += m_minutes.at(height)) {
            ++height;
        }
        return static_cast<int>(height);
    }

    std::vector<qint64> m_minutes = std::vector<qint64>(kHeights);
    qint64 m_total = 0;
};

qint64 roundedUpToMinute(qint64 time)
{
    return (time + kSecondsPerMinute - 1) / kSecondsPerMinute;
}

void addLow(Counts &counts, std::optional<int> base)
{
    for (std::size_t i = 0; base && i < kCountedHeights.size(); ++i) {
        counts.below.at(i) += *base < kCountedHeights.at(i) ? 1 : 0;
    }
}

} // namespace

std::optional<int> lowestBase(const Sample &sample)
{
    if (sample.first.isHeight() && sample.second.isHeight()) {
        return std::min(sample.first.number(), sample.second.number());
    }
    if (sample.first.isHeight()) {
        return sample.first.number();
    }
    return sample.second.isHeight() ? std::optional(sample.second.number()) : std::nullopt;
}

bool isNoCloud(const Sample &sample)
{
    return sample.first.isNoCloud() && sample.second.isNoCloud();
}

bool hasCode(const Sample &sample)
{
    return sample.first.isCode() || sample.second.isCode();
}

Counts countMinutes(const History &history, qint64 from, qint64 to, qint64 now)
{
    Counts counts;
    HeightHistogram first;
    HeightHistogram second;
    const qint64 nowMinute = now / kSecondsPerMinute;
    qint64 received = 0;
    qint64 early = 0; // lines of this minute, or with a wrong clock even of later ones
    history.forEachMinute(from, to, [&](const Sample &sample) {
        ++received;
        early += sample.minute() >= nowMinute ? 1 : 0;
        first.add(sample.first);
        second.add(sample.second);
        addLow(counts, lowestBase(sample));
        counts.noCloud += isNoCloud(sample) ? 1 : 0;
        counts.codes += hasCode(sample) ? 1 : 0;
        counts.reserve += sample.channel == RecordChannel::Reserve ? 1 : 0;
    });
    counts.first = first.counts();
    counts.second = second.counts();
    const qint64 end = std::min(roundedUpToMinute(to), nowMinute);
    counts.minutes = std::max(qint64(0), end - roundedUpToMinute(from)) + early;
    counts.minutes = std::max(counts.minutes, received);
    counts.missing = counts.minutes - received;
    return counts;
}

} // namespace ork2
