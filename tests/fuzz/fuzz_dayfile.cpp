// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"
#include "dayfileparser.h"

#include <vector>

using namespace ork2;

namespace {

// Everything that a parser reported, in order.
class Report : public DayFileReceiver
{
public:
    void record(
        const DayRecord &record, QByteArrayView first, QByteArrayView second, qint64 line) override
    {
        fuzz::check(record.secondOfDay >= 0 && record.secondOfDay < 86400, "time of a day");
        fuzz::check(line >= m_line, "lines are reported in order");
        for (const LayerValue value : {record.first, record.second}) {
            fuzz::check(value.isUnreadable() || value.number() <= 9999, "four digits");
            fuzz::check(!value.isHeight() || value.number() > 0, "a height is positive");
        }
        m_line = line;
        entries.push_back({line, record.secondOfDay, first.toByteArray(), second.toByteArray()});
    }

    void problem(LineProblem problem, qint64 line) override
    {
        fuzz::check(line > m_problemLine, "one problem for each line");
        fuzz::check(line > m_line, "the problem is reported before the record");
        m_problemLine = line;
        entries.push_back({line, -1 - static_cast<int>(problem), {}, {}});
    }

    struct Entry
    {
        qint64 line;
        int kind;
        QByteArray first;
        QByteArray second;
        bool operator==(const Entry &) const = default;
    };
    std::vector<Entry> entries;

private:
    qint64 m_line = 0;
    qint64 m_problemLine = 0;
};

std::vector<Report::Entry> parsed(const QByteArray &text, qsizetype pieceLength)
{
    Report report;
    DayFileParser parser(report, 17);
    for (qsizetype at = 0; at < text.size(); at += pieceLength) {
        parser.parse(QByteArrayView(text).sliced(at, qMin(pieceLength, text.size() - at)));
    }
    parser.finish();
    return report.entries;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray text = fuzz::bytes(data, size);
    const auto whole = parsed(text, qMax(text.size(), qsizetype(1)));
    const qsizetype pieceLength = size > 0 ? 1 + data[0] : 1;
    fuzz::check(whole == parsed(text, pieceLength), "pieces make no difference");
    return 0;
}
