// SPDX-License-Identifier: GPL-3.0-or-later
#include "faultsscenario.h"

#include "frames.h"

namespace ork2 {

namespace {

constexpr int kMinGood = 3; // readings between two faults
constexpr int kMaxGood = 20;
constexpr int kMaxNoise = 300; // bytes
constexpr int kMinSilence = 3; // periods
constexpr int kMaxSilence = 40;
constexpr int kMinUnplugging = 2;
constexpr int kMaxUnplugging = 10;
constexpr int kLastFrameByte = static_cast<int>(kFrameLength) - 1;

} // namespace

FaultsScenario::FaultsScenario(quint32 seed, std::chrono::milliseconds period)
    : m_weather(seed)
    , m_random(seed + 1)
    , m_period(period)
    , m_goodLeft(m_random.between(kMinGood, kMaxGood))
{ }

std::optional<Step> FaultsScenario::next()
{
    if (m_goodLeft > 0) {
        --m_goodLeft;
        return Transmission{nextFrame()};
    }
    m_goodLeft = m_random.between(kMinGood, kMaxGood);
    const auto fault = static_cast<Fault>(m_fault);
    m_fault = (m_fault + 1) % kFaults;
    return makeFault(fault);
}

Step FaultsScenario::makeFault(Fault fault)
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
        QByteArray noise(m_random.between(1, kMaxNoise), '\0');
        for (char &byte : noise) {
            byte = randomByte();
        }
        return Transmission{noise};
    }
    case Fault::Silence:
        return Silence{m_period * m_random.between(kMinSilence, kMaxSilence)};
    case Fault::Unplugging:
        break;
    }
    return Unplugging{m_period * m_random.between(kMinUnplugging, kMaxUnplugging)};
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
