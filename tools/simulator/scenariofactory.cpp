// SPDX-License-Identifier: GPL-3.0-or-later
#include "scenariofactory.h"

#include "dayfile.h"
#include "errorsscenario.h"
#include "faultsscenario.h"
#include "scenariofile.h"
#include "weatherscenario.h"

#include <QFile>

namespace ork2 {

namespace {

using ScriptParser = ScriptResult (*)(const QByteArray &text, const QString &fileName);

ScenarioResult scenarioFromFile(const QString &fileName, const QString &kind, ScriptParser parse)
{
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly)) {
        return {nullptr,
            QStringLiteral("cannot read the %1 \"%2\": %3")
                .arg(kind, fileName, file.errorString())};
    }
    ScriptResult result = parse(file.readAll(), fileName);
    if (!result.error.isEmpty()) {
        return {nullptr, result.error};
    }
    return {std::make_unique<ScriptScenario>(std::move(result.script)), {}};
}

} // namespace

ScenarioResult makeScenario(const Options &options)
{
    if (!options.dayFile.isEmpty()) {
        return scenarioFromFile(options.dayFile, QStringLiteral("day file"), parseDayFile);
    }
    if (options.scenario == QLatin1String("weather")) {
        return {std::make_unique<WeatherScenario>(options.seed), {}};
    }
    if (options.scenario == QLatin1String("errors")) {
        return {std::make_unique<ErrorsScenario>(options.seed), {}};
    }
    if (options.scenario == QLatin1String("faults")) {
        return {std::make_unique<FaultsScenario>(options.seed, options.period), {}};
    }
    return scenarioFromFile(options.scenario, QStringLiteral("scenario file"), parseScenarioFile);
}

} // namespace ork2
