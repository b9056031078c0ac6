// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "configuration.h"
#include "journal.h"
#include "odbcdriveralias.h"
#include "recorder.h"
#include "recordersignals.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTextStream>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sysexits.h>

namespace {

const QString kUsage = QStringLiteral(
    "Использование: ork2-recorder [--config ФАЙЛ] [--check]\n"
    "\n"
    "Записывает измерения ОРК-2 в суточные файлы без окна и без дежурного.\n"
    "\n"
    "  --config ФАЙЛ  файл настроек (по умолчанию %1)\n"
    "  --check        сказать, что будет сделано, проверить порт, папку и сервер и закончить\n"
    "  --version      версия\n"
    "  -h, --help     эта справка\n"
    "\n"
    "Код завершения: 0 — закончено по просьбе или проверка удалась, 1 — проверка не удалась,\n"
    "64 — неверны параметры, 78 — неверен файл настроек.\n");

struct Options
{
    QString configurationFile = ork2::kDefaultConfigurationFile.toString();
    bool check = false;
};

void print(const QString &text)
{
    QTextStream(stdout) << text;
}

// Returns the exit code if the program is to exit at once.
std::optional<int> readOptions(Options &options)
{
    QCommandLineParser parser;
    const QCommandLineOption config(QStringLiteral("config"), {}, QStringLiteral("file"));
    const QCommandLineOption check(QStringLiteral("check"));
    const QCommandLineOption version(QStringLiteral("version"));
    const QCommandLineOption help(QStringList{QStringLiteral("h"), QStringLiteral("help")});
    parser.addOptions({config, check, version, help});
    if (!parser.parse(QCoreApplication::arguments()) || !parser.positionalArguments().isEmpty()) {
        ork2::journal::write(ork2::journal::Priority::Error,
            QStringLiteral("Неверны параметры; список — ork2-recorder --help."));
        return EX_USAGE;
    }
    if (parser.isSet(help)) {
        print(kUsage.arg(options.configurationFile));
        return EXIT_SUCCESS;
    }
    if (parser.isSet(version)) {
        print(QStringLiteral("ork2-recorder %1\n").arg(QLatin1String(ORK2_VERSION)));
        return EXIT_SUCCESS;
    }
    if (parser.isSet(config)) {
        options.configurationFile = parser.value(config);
    }
    options.check = parser.isSet(check);
    return std::nullopt;
}

int run(const ork2::Configuration &configuration, const QString &file)
{
    const ork2::RecorderSignals received;
    ork2::Recorder recorder(configuration, file);
    QObject::connect(
        &received, &ork2::RecorderSignals::terminate, &recorder, [] { QCoreApplication::quit(); });
    QObject::connect(&received, &ork2::RecorderSignals::reload, &recorder, &ork2::Recorder::reload);
    recorder.start();
    const int status = QCoreApplication::exec();
    if (!recorder.end()) {
        // The worker is stuck in the driver. Destroying the objects that it uses would crash.
        std::fflush(nullptr);
        std::_Exit(status);
    }
    return status;
}

} // namespace

int main(int argc, char *argv[])
{
    // A program that reads the messages may exit first, which must not end the measurement.
    std::signal(SIGPIPE, SIG_IGN);
    const QCoreApplication application(argc, argv);
    ork2::journal::install();
    Options options;
    if (const std::optional<int> status = readOptions(options)) {
        return *status;
    }
    const ork2::ConfigurationResult result = ork2::readConfiguration(options.configurationFile);
    if (!result.configuration) {
        ork2::journal::write(ork2::journal::Priority::Error, result.error);
        return EX_CONFIG;
    }
    ork2::registerOdbcDriverAlias();
    if (options.check) {
        return ork2::checkConfiguration(*result.configuration) ? EXIT_SUCCESS : EXIT_FAILURE;
    }
    return run(*result.configuration, options.configurationFile);
}
