// SPDX-License-Identifier: GPL-3.0-or-later
#include "commandline.h"

#include <QCommandLineParser>
#include <QFileInfo>

namespace ork2 {

namespace {

const QString kDateFormat = QStringLiteral("yyyy-MM-dd");
const QStringList kExportSuffixes{
    QStringLiteral("csv"), QStringLiteral("png"), QStringLiteral("pdf")};

QString checked(const CommandLine &line)
{
    const QString suffix = QFileInfo(line.exportFile).suffix().toLower();
    if (!line.exportFile.isEmpty() && !kExportSuffixes.contains(suffix)) {
        return QStringLiteral("Имя файла должно кончаться на .csv, .png или .pdf: %1")
            .arg(line.exportFile);
    }
    if (!line.exportFile.isEmpty() && line.folder.isEmpty()) {
        return QStringLiteral("С --export нужна папка данных");
    }
    if (line.from.isValid() && line.to.isValid() && line.from > line.to) {
        return QStringLiteral("Дата --from позже даты --to");
    }
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    QCommandLineParser parser;
    parser.addOptions({{QStringLiteral("export"), {}, QStringLiteral("FILE")},
        {QStringLiteral("from"), {}, QStringLiteral("D")},
        {QStringLiteral("to"), {}, QStringLiteral("D")},
        {QStringLiteral("unit"), {}, QStringLiteral("N")},
        {{QStringLiteral("h"), QStringLiteral("help")}, {}},
        {{QStringLiteral("v"), QStringLiteral("version")}, {}}});
    CommandLine line;
    const bool parsed = parser.parse(arguments);
    line.help = parser.isSet(QStringLiteral("help"));
    line.version = parser.isSet(QStringLiteral("version"));
    if (!parsed) {
        const QStringList unknown = parser.unknownOptionNames();
        line.error = unknown.isEmpty()
            ? QStringLiteral("Параметру не хватает значения")
            : QStringLiteral("Неизвестный параметр: %1").arg(unknown.join(u' '));
        return line;
    }
    const QStringList folders = parser.positionalArguments();
    if (folders.size() > 1) {
        line.error = QStringLiteral("Указано больше одной папки");
        return line;
    }
    line.folder = folders.value(0);
    line.exportFile = parser.value(QStringLiteral("export"));
    if (parser.isSet(QStringLiteral("export")) && line.exportFile.isEmpty()) {
        line.error = QStringLiteral("Не указано имя файла для --export");
        return line;
    }
    const auto readDate = [&](const QString &name, QDate &date) {
        const QString text = parser.value(name);
        date = QDate::fromString(text, kDateFormat);
        if (parser.isSet(name) && !date.isValid()) {
            line.error = QStringLiteral("Нет такой даты: %1. Дату пишут так: 2026-11-22").arg(text);
        }
    };
    readDate(QStringLiteral("from"), line.from);
    readDate(QStringLiteral("to"), line.to);
    if (parser.isSet(QStringLiteral("unit"))) {
        bool isNumber = false;
        const int unit = parser.value(QStringLiteral("unit")).toInt(&isNumber);
        line.unit = unit;
        if (!isNumber || unit < 0) {
            line.error = QStringLiteral("Номер прибора должен быть целым числом: %1")
                             .arg(parser.value(QStringLiteral("unit")));
        }
    }
    if (line.error.isEmpty()) {
        line.error = checked(line);
    }
    return line;
}

QString helpText()
{
    return QStringLiteral(
        "Использование: ork2-archive [ПАПКА]\n"
        "               ork2-archive --export ФАЙЛ.csv|.png|.pdf [--from ДАТА] [--to ДАТА]\n"
        "                            [--unit НОМЕР] ПАПКА\n"
        "\n"
        "Показывает суточные файлы терминала ОРК-2. С --export сохраняет их в файл без окна.\n"
        "ПАПКА содержит папки приборов, например «ORK-2 N17». Даты пишут так: 2026-11-22;\n"
        "обе входят в промежуток.\n");
}

} // namespace ork2
