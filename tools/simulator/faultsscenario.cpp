// SPDX-License-Identifier: GPL-3.0-or-later
#include "faultsscenario.h"

#include "frames.h"

namespace ork2 {

namespace {

constexpr int kFewestGood = 3; // readings between two faults
constexpr int kMostGood = 20;
constexpr int kLongestNoise = 300;  // bytes
constexpr int kShortestSilence = 3; // periods
constexpr int kLongestSilence = 40;
constexpr int kShortestUnplugging = 2;
constexpr int kLongestUnplugging = 10;
constexpr int kLastFrameByte = static_cast<int>(kFrameLength) - 1;

} // namespace

FaultsScenario::FaultsScenario(quint32 seed, std::chrono::milliseconds period)
    : m_weather(seed)
    , m_random(seed + 1)
    , m_period(period)
    , m_goodLeft(m_random.between(kFewestGood, kMostGood))
{ }

std::optional<Step> FaultsScenario::next()
{
    if (m_goodLeft > 0) {
        --m_goodLeft;
        return Transmission{nextFrame()};
    }
    m_goodLeft = m_random.between(kFewestGood, kMostGood);
    const auto fault = static_cast<Fault>(m_fault);
    m_fault = (m_fault + 1) % kFaults;
    return faulty(fault);
}

Step FaultsScenario::faulty(Fault fault)
{
    switch (fault) {
    case Fault::LostByte:
        return Transmission{nextFrame().remove(m_random.between(0, kLastFrameByte), 1)};
    case Fault::AddedByte: {
        const int place = m_random.between(0, kLastFrameByte + 1);
        return Transmission{nextFrame().insert(place, randomByte())};
    }
    case Fault::ChangedByte: {
        QByteArray frame = nextFrame();
        char &byte = frame[m_random.between(0, kLastFrameByte)];
        byte = static_cast<char>(byte ^ m_random.between(1, 255));
        return Transmission{frame};
    }
    case Fault::Noise: {
        QByteArray noise(m_random.between(1, kLongestNoise), '\0');
        for (char &byte : noise) {
            byte = randomByte();
        }
        return Transmission{noise};
    }
    case Fault::Silence:
        return Silence{m_period * m_random.between(kShortestSilence, kLongestSilence)};
    case Fault::Unplugging:
        break;
    }
    return Unplugging{m_period * m_random.between(kShortestUnplugging, kLongestUnplugging)};
}

QByteArray FaultsScenario::nextFrame()
{
    return readingFrame(m_weather.nextReading());
}

char FaultsScenario::randomByte()
{
    return static_cast<char>(m_random.between(0, 255));
}

} // namespace ork2
