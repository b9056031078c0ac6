// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace ork2 {

enum class Delivery {
    Whole, // each frame in one write
    Bytes, // byte by byte at the speed of the serial line
};

struct Options
{
    QString scenario = QStringLiteral("weather"); // name of a built-in scenario or of a file
    QString dayFile;                              // empty: use the scenario
    QString linkPath;                             // empty: no link
    std::chrono::milliseconds period{1000};       // 0: as fast as the reader reads
    Delivery delivery = Delivery::Whole;
    quint32 seed = 1;
    std::optional<int> count; // transmissions; std::nullopt: unlimited
};

struct CommandLine
{
    std::optional<Options> options; // std::nullopt: print the text and exit
    bool helpRequested = false;     // the text is the help; otherwise it is an error message
    QString text;
};

// The first argument is the program name.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);

} // namespace ork2
