// SPDX-License-Identifier: GPL-3.0-or-later
// Opens a year of day files in the chart of the archive and moves through it. Prints medians of
// the processor time, which other programs do not change much.
// Usage: bench_archive FOLDER; FOLDER contains the folders of the instruments.
#include "archivechart.h"
#include "archivefolder.h"
#include "counts.h"
#include "dayreader.h"

#include <QApplication>
#include <QFile>
#include <QTextStream>

#include <ctime>

using namespace ork2;

namespace {

constexpr int kRuns = 5;
constexpr int kSteps = 100;

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + qsizetype(values.size() / 2), values.end());
    return values[values.size() / 2];
}

template <typename Function> double milliseconds(Function function)
{
    const std::clock_t start = std::clock();
    function();
    return double(std::clock() - start) * 1000 / CLOCKS_PER_SEC;
}

History readAll(const Instrument &instrument, const QTimeZone &zone)
{
    History history;
    for (const QDate date : instrument.days) {
        history.set(readDay(instrument.dayFile(date), date, instrument.unit, zone));
    }
    return history;
}

double residentMegabytes()
{
    QFile file(QStringLiteral("/proc/self/statm"));
    const bool open = file.open(QIODevice::ReadOnly);
    return open ? file.readAll().split(' ').value(1).toDouble() * 4096 / 1e6 : 0;
}

} // namespace

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    QTextStream out(stdout);
    const QTimeZone zone = QTimeZone::systemTimeZone();
    const ArchiveFolder archive = openArchiveFolder(QCoreApplication::arguments().value(1));
    if (archive.instruments.isEmpty()) {
        out << archive.error << '\n';
        return 1;
    }
    const Instrument &instrument = archive.instruments.first();
    History history;
    std::vector<double> reading;
    for (int run = 0; run < kRuns; ++run) {
        reading.push_back(milliseconds([&] { history = readAll(instrument, zone); }));
    }
    ArchiveChart chart(zone);
    chart.resize(900, 600);
    chart.setNow(QDateTime::currentSecsSinceEpoch());
    chart.show();
    const qint64 from = instrument.days.first().startOfDay(zone).toSecsSinceEpoch();
    const qint64 length = 365 * kSecondsPerDay;
    out << "read " << instrument.days.size() << " files: " << median(reading) << " ms\n";
    for (const HeightScale scale :
        {HeightScale::Usual, HeightScale::Whole, HeightScale::Logarithmic}) {
        chart.setScale(scale);
        chart.setHistory(history);
        std::vector<double> frames;
        for (int step = 0; step < kSteps; ++step) {
            const qint64 shift = (step - kSteps / 2) * length / 1000;
            frames.push_back(milliseconds([&] {
                chart.setRange(from + shift, from + shift + length);
                chart.replot(QCustomPlot::rpImmediateRefresh);
            }));
        }
        out << "frame of a year, scale " << static_cast<int>(scale) << ": " << median(frames)
            << " ms, longest " << *std::max_element(frames.begin(), frames.end()) << " ms\n";
    }
    Counts counts;
    const double counting = milliseconds([&] {
        counts = countMinutes(history, from, from + length, QDateTime::currentSecsSinceEpoch());
    });
    out << "counts of " << counts.minutes << " minutes: " << counting << " ms\n";
    out << "resident: " << residentMegabytes() << " MB\n";
    return 0;
}
