// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDate>
#include <QString>
#include <QStringList>

#include <optional>

namespace ork2 {

// The arguments of the program.
struct CommandLine
{
    QString folder;     // empty: the last one, or the data folder of the terminal
    QString exportFile; // empty: show the window
    QDate from;         // invalid: the first day with data
    QDate to;           // inclusive; invalid: the last day with data
    std::optional<int> unit;
    QString error; // for the user; empty if the arguments are valid
    bool help = false;
    bool version = false;
};

[[nodiscard]] CommandLine parseCommandLine(const QStringList &arguments);
[[nodiscard]] QString helpText();

} // namespace ork2
