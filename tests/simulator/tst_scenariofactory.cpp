// SPDX-License-Identifier: GPL-3.0-or-later
#include "scenariofactory.h"

#include "errorsscenario.h"
#include "faultsscenario.h"
#include "weatherscenario.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ork2;

class tst_scenariofactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void make_builtInName_returnsThatScenario();
    void make_seed_isPassedToTheScenario();
    void make_scenarioFile_isParsed();
    void make_dayFile_isParsed();
    void make_badFile_reportsFileAndLine();
    void make_missingFile_reportsReason();

private:
    [[nodiscard]] QString written(const QByteArray &text);

    QTemporaryDir m_folder;
};

QString tst_scenariofactory::written(const QByteArray &text)
{
    const QString path = m_folder.filePath(QStringLiteral("запись.txt"));
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(text) == text.size() ? path : QString();
}

void tst_scenariofactory::make_builtInName_returnsThatScenario()
{
    Options options;
    QVERIFY(dynamic_cast<WeatherScenario *>(makeScenario(options).scenario.get()) != nullptr);
    options.scenario = QStringLiteral("errors");
    QVERIFY(dynamic_cast<ErrorsScenario *>(makeScenario(options).scenario.get()) != nullptr);
    options.scenario = QStringLiteral("faults");
    QVERIFY(dynamic_cast<FaultsScenario *>(makeScenario(options).scenario.get()) != nullptr);
}

void tst_scenariofactory::make_seed_isPassedToTheScenario()
{
    for (const char *name : {"weather", "errors", "faults"}) {
        Options options;
        options.scenario = QString::fromLatin1(name);
        options.seed = 2;
        Options other = options;
        other.seed = 3;
        const auto first = makeScenario(options).scenario->next();
        QVERIFY(makeScenario(options).scenario->next() == first);
        QVERIFY(makeScenario(other).scenario->next() != first);
    }
}

void tst_scenariofactory::make_scenarioFile_isParsed()
{
    Options options;
    options.scenario = written("reading 0 850 1500\n");
    const ScenarioResult result = makeScenario(options);
    QVERIFY2(result.scenario != nullptr, qPrintable(result.error));
    QVERIFY(result.scenario->next() == Step(Transmission{"H008501500\r"}));
    QVERIFY(!result.scenario->next());
}

void tst_scenariofactory::make_dayFile_isParsed()
{
    Options options;
    options.dayFile = written("00:00:00\t0850\t----\tРезерв");
    const ScenarioResult result = makeScenario(options);
    QVERIFY2(result.scenario != nullptr, qPrintable(result.error));
    QVERIFY(result.scenario->next() == Step(Transmission{"H108505000\r"}));
    QVERIFY(!result.scenario->next());
}

void tst_scenariofactory::make_badFile_reportsFileAndLine()
{
    Options options;
    options.scenario = written("\njump\n");
    const ScenarioResult result = makeScenario(options);
    QVERIFY(result.scenario == nullptr);
    QCOMPARE(result.error, options.scenario + QStringLiteral(":2: there is no command \"jump\""));
}

void tst_scenariofactory::make_missingFile_reportsReason()
{
    Options options;
    options.scenario = m_folder.filePath(QStringLiteral("none"));
    QCOMPARE(makeScenario(options).error,
        QStringLiteral("cannot read the scenario file \"%1\": No such file or directory")
            .arg(options.scenario));
    options.dayFile = m_folder.path();
    QVERIFY(makeScenario(options).error.startsWith(
        QStringLiteral("cannot read the day file \"%1\": ").arg(options.dayFile)));
}

QTEST_GUILESS_MAIN(tst_scenariofactory)
#include "tst_scenariofactory.moc"
