// SPDX-License-Identifier: GPL-3.0-or-later
#include "dayreader.h"

#include "localday.h"

#include <QFile>
#include <QFileInfo>

namespace ork2 {

namespace {

constexpr qint64 kPieceLength = 262144; // bytes read at a time

QString textOf(LineProblem problem)
{
    switch (problem) {
    case LineProblem::NoRecord:
        break;
    case LineProblem::TooLong:
        return QStringLiteral("слишком длинная строка");
    case LineProblem::ZeroBytes:
        return QStringLiteral("нулевые байты");
    case LineProblem::MissingFields:
        return QStringLiteral("строка оборвана");
    case LineProblem::ExtraFields:
        return QStringLiteral("лишние поля");
    case LineProblem::BadHeight:
        return QStringLiteral("высота не читается");
    case LineProblem::UnknownChannel:
        return QStringLiteral("канал не читается");
    case LineProblem::OtherUnit:
        return QStringLiteral("в заголовке номер другого прибора");
    }
    return QStringLiteral("строка не читается");
}

class DayCollector : public DayFileReceiver
{
public:
    DayCollector(Day &day, const QTimeZone &zone)
        : m_day(day)
        , m_times(day.date, zone)
    { }

    void record(const DayRecord &record, QByteArrayView, QByteArrayView, qint64 line) override
    {
        if (m_day.samples.size() >= kMaxDaySamples) {
            addProblem(line, QStringLiteral("в файле слишком много строк"));
            return;
        }
        const Sample sample{
            m_times.toUtc(record.secondOfDay), record.first, record.second, record.channel};
        if (!m_day.samples.empty() && sample.time <= m_day.samples.back().time) {
            addProblem(line,
                sample.time == m_day.samples.back().time ? QStringLiteral("время повторяется")
                                                         : QStringLiteral("время идёт назад"));
        }
        m_day.samples.push_back(sample);
    }

    void problem(LineProblem problem, qint64 line) override { addProblem(line, textOf(problem)); }

    void addProblem(qint64 line, const QString &text)
    {
        if (m_day.problemCount++ < kMaxListedProblems) {
            m_day.problems.push_back({line, text});
        }
    }

    void finish()
    {
        const auto earlier = [](const Sample &a, const Sample &b) { return a.time < b.time; };
        if (!std::is_sorted(m_day.samples.begin(), m_day.samples.end(), earlier)) {
            std::stable_sort(m_day.samples.begin(), m_day.samples.end(), earlier);
        }
        m_day.samples.shrink_to_fit();
    }

private:
    Day &m_day;
    LocalDay m_times;
};

// Returns false if an error occurred. Not mapped into memory: a file that is truncated by another
// program while it is mapped would end the process.
bool readPieces(QFile &file, DayFileParser &parser, Day &day, const std::atomic<bool> *cancel)
{
    QByteArray piece(qMin(kPieceLength, file.size() + 1), Qt::Uninitialized);
    while (cancel == nullptr || !*cancel) {
        const qint64 length = file.read(piece.data(), piece.size());
        if (length <= 0) {
            return length == 0;
        }
        day.size += length;
        parser.parse(QByteArrayView(piece).first(length));
    }
    return true;
}

} // namespace

DayPointer readDay(const QString &path, QDate date, int unit, const QTimeZone &zone,
    const std::atomic<bool> *cancel)
{
    auto day = std::make_shared<Day>();
    day->date = date;
    day->path = path;
    DayCollector collector(*day, zone);
    const QFileInfo info(path);
    QFile file(path);
    // Opening a pipe would wait for its other end.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        collector.addProblem(0, QStringLiteral("файл не открывается"));
        return day;
    }
    day->modified = info.lastModified();
    day->size = 0;
    DayFileParser parser(collector, unit);
    if (!readPieces(file, parser, *day, cancel)) {
        collector.addProblem(0, QStringLiteral("файл не дочитан: %1").arg(file.errorString()));
    }
    parser.finish();
    collector.finish();
    return day;
}

Day parseDay(QByteArrayView text, QDate date, int unit, const QTimeZone &zone)
{
    Day day;
    day.date = date;
    day.size = text.size();
    DayCollector collector(day, zone);
    DayFileParser parser(collector, unit);
    parser.parse(text);
    parser.finish();
    collector.finish();
    return day;
}

} // namespace ork2
