// SPDX-License-Identifier: GPL-3.0-or-later
#include "errorsscenario.h"

#include "frames.h"

#include <array>
#include <utility>

namespace ork2 {

namespace {

constexpr int kMeasured = -1; // the height of the weather scenario is kept in this field

constexpr std::array<std::pair<int, int>, 15> kBlocks{{
    {kNoFlashCode, kNoFlashCode},
    {kNotReadyCode, kNotReadyCode},
    {kDataErrorCode, kDataErrorCode},
    {kNoFlashCode, kMeasured},
    {kMeasured, kNoFlashCode},
    {kNotReadyCode, kMeasured},
    {kMeasured, kNotReadyCode},
    {kDataErrorCode, kMeasured},
    {kMeasured, kDataErrorCode},
    {kNoFlashCode, kNotReadyCode},
    {kNotReadyCode, kNoFlashCode},
    {kNoFlashCode, kDataErrorCode},
    {kDataErrorCode, kNoFlashCode},
    {kNotReadyCode, kDataErrorCode},
    {kDataErrorCode, kNotReadyCode},
}};

constexpr int kMinNormal = 3; // readings between two blocks
constexpr int kMaxNormal = 6;
constexpr int kMinBlock = 2; // readings
constexpr int kMaxBlock = 5;

} // namespace

ErrorsScenario::ErrorsScenario(quint32 seed)
    : m_weather(seed)
    , m_random(seed + 1)
    , m_normalLeft(m_random.between(kMinNormal, kMaxNormal))
{ }

std::optional<Step> ErrorsScenario::next()
{
    Reading reading = m_weather.nextReading();
    if (m_normalLeft > 0) {
        --m_normalLeft;
        if (m_normalLeft == 0) {
            m_errorsLeft = m_random.between(kMinBlock, kMaxBlock);
        }
        return Transmission{readingFrame(reading)};
    }

    const auto [first, second] = kBlocks.at(m_block);
    if (first != kMeasured) {
        reading.firstLayer = first;
    }
    if (second != kMeasured) {
        reading.secondLayer = second;
    }
    if (--m_errorsLeft == 0) {
        m_block = (m_block + 1) % kBlocks.size();
        m_normalLeft = m_random.between(kMinNormal, kMaxNormal);
    }
    return Transmission{readingFrame(reading)};
}

} // namespace ork2
