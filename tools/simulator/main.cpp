// SPDX-License-Identifier: GPL-3.0-or-later
#include "options.h"
#include "player.h"
#include "scenariofactory.h"
#include "terminationsignal.h"

#include <QCoreApplication>

#include <csignal>
#include <cstdio>

namespace {

constexpr int kExitFailure = 1; // system error: no pseudo-terminal or no link
constexpr int kExitUsage = 2;   // invalid options or invalid file

void print(std::FILE *stream, const QString &text)
{
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

int reportError(const QString &text, int exitCode)
{
    print(stderr, QStringLiteral("ork2-simulator: %1\n").arg(text));
    return exitCode;
}

} // namespace

int main(int argc, char *argv[])
{
    // Continue if the reader of the output exits, for example with "| head".
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);

    const ork2::CommandLine commandLine = ork2::parseCommandLine(QCoreApplication::arguments());
    if (commandLine.helpRequested) {
        print(stdout, commandLine.text);
        return 0;
    }
    if (!commandLine.options) {
        return reportError(commandLine.text, kExitUsage);
    }
    ork2::ScenarioResult result = ork2::makeScenario(*commandLine.options);
    if (!result.scenario) {
        return reportError(result.error, kExitUsage);
    }

    const ork2::TerminationSignal termination;
    QObject::connect(
        &termination, &ork2::TerminationSignal::received, &application, &QCoreApplication::quit);
    ork2::Player player(std::move(result.scenario), *commandLine.options);
    QObject::connect(&player, &ork2::Player::ready, &application,
        [](const QString &path) { print(stdout, QStringLiteral("ready %1\n").arg(path)); });
    QObject::connect(
        &player, &ork2::Player::finished, &application, [] { QCoreApplication::quit(); });
    QObject::connect(&player, &ork2::Player::failed, &application,
        [](const QString &reason) { QCoreApplication::exit(reportError(reason, kExitFailure)); });
    QMetaObject::invokeMethod(&player, &ork2::Player::start, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
