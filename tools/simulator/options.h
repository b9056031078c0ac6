// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace ork2 {

enum class Delivery {
    Whole, // a frame in one write
    Bytes, // byte by byte at the pace of the serial line
};

struct Options
{
    QString scenario = QStringLiteral("weather"); // a built-in one's name or a file's
    QString dayFile;                              // empty: the scenario is played
    QString linkPath;                             // empty: no link
    std::chrono::milliseconds period{1000};       // 0: as fast as the reader takes it
    Delivery delivery = Delivery::Whole;
    quint32 seed = 1;
    std::optional<int> count; // transmissions; none: without end
};

struct CommandLine
{
    std::optional<Options> options; // none: print the text and exit
    bool helpAsked = false;         // the text is the help; otherwise it tells what is wrong
    QString text;
};

// arguments: the program's name first.
[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);

} // namespace ork2
