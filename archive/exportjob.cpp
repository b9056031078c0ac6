// SPDX-License-Identifier: GPL-3.0-or-later
#include "exportjob.h"

#include "archivechart.h"
#include "archivefolder.h"
#include "csvexport.h"
#include "dayreader.h"
#include "rangetexts.h"
#include "savefile.h"

#include <QTextStream>

namespace ork2 {

namespace {

int failed(const QString &text, int code = kExitFailure)
{
    QTextStream(stderr) << "ork2-archive: " << text << '\n';
    return code;
}

// Returns nullptr after an error.
const Instrument *chosenInstrument(const ArchiveFolder &archive, std::optional<int> unit)
{
    if (!unit && archive.preferredUnit >= 0) {
        unit = archive.preferredUnit;
    }
    if (unit) {
        const Instrument *instrument = archive.instrument(*unit);
        if (instrument == nullptr) {
            failed(QStringLiteral("В папке «%1» нет прибора N%2").arg(archive.path).arg(*unit));
        }
        return instrument;
    }
    if (archive.instruments.size() == 1) {
        return &archive.instruments.first();
    }
    QStringList units;
    for (const Instrument &instrument : archive.instruments) {
        units += QString::number(instrument.unit);
    }
    failed(QStringLiteral("Приборов несколько: %1. Выберите один: --unit N")
               .arg(units.join(QStringLiteral(", "))));
    return nullptr;
}

History readDays(const Instrument &instrument, QDate from, QDate to, const QTimeZone &zone)
{
    History history;
    for (const QDate date : instrument.days) {
        if (date >= from && date <= to) {
            history.set(readDay(instrument.dayFile(date), date, instrument.unit, zone));
        }
    }
    return history;
}

void listProblems(const History &history)
{
    QTextStream out(stderr);
    for (const DayPointer &day : history.days()) {
        for (const DayProblem &problem : day->problems) {
            out << day->path << ':' << problem.line << ": " << problem.text << '\n';
        }
        if (day->problemCount > qint64(day->problems.size())) {
            out << day->path << ": " << QStringLiteral("всего: %1").arg(day->problemCount) << '\n';
        }
    }
}

bool writeCsvOfDays(QIODevice &device, const History &history, const QTimeZone &zone)
{
    return writeCsv(device, history, std::numeric_limits<qint64>::min(),
        std::numeric_limits<qint64>::max(), zone);
}

// Returns an error message, empty on success.
QString writePicture(const QString &fileName, const History &history, int unit, QDate from,
    QDate to, const QTimeZone &zone)
{
    ArchiveChart chart(zone);
    chart.setHistory(history);
    chart.setNow(QDateTime::currentSecsSinceEpoch());
    chart.setRange(from.startOfDay(zone).toSecsSinceEpoch(),
        to.addDays(1).startOfDay(zone).toSecsSinceEpoch());
    chart.setTitle(chartTitle(unit, from, to));
    const bool isPdf = fileName.endsWith(QStringLiteral(".pdf"), Qt::CaseInsensitive);
    return saveFile(fileName,
        [&](QIODevice &device) { return isPdf ? chart.writePdf(device) : chart.writePng(device); });
}

} // namespace

int runExport(const CommandLine &line)
{
    const ArchiveFolder archive = openArchiveFolder(line.folder);
    if (!archive.error.isEmpty()) {
        return failed(archive.error);
    }
    const Instrument *instrument = chosenInstrument(archive, line.unit);
    if (instrument == nullptr) {
        return archive.instruments.size() > 1 && !line.unit ? kExitUsage : kExitFailure;
    }
    if (!instrument->error.isEmpty()) {
        return failed(instrument->error);
    }
    if (instrument->days.isEmpty()) {
        return failed(QStringLiteral("В папке «%1» нет суточных файлов").arg(instrument->folder));
    }
    const QDate from = line.from.isValid() ? line.from : instrument->days.first();
    const QDate to = line.to.isValid() ? line.to : std::max(from, instrument->days.last());
    if (from > to) {
        return failed(QStringLiteral("За эти дни данных нет"));
    }
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const History history = readDays(*instrument, from, to, zone);
    listProblems(history);
    const QString error = line.exportFile.endsWith(QStringLiteral(".csv"), Qt::CaseInsensitive)
        ? saveFile(line.exportFile,
            [&](QIODevice &device) { return writeCsvOfDays(device, history, zone); })
        : writePicture(line.exportFile, history, instrument->unit, from, to, zone);
    return error.isEmpty() ? kExitSuccess
                           : failed(QStringLiteral("%1: %2").arg(line.exportFile, error));
}

} // namespace ork2
