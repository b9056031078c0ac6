// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvexport.h"

#include "dayfileformat.h"

#include <QIODevice>

namespace ork2 {

namespace {

constexpr qsizetype kWriteLength = 65536; // bytes

const QString kHeader = QStringLiteral("Время,Первый слой (м),Второй слой (м),Канал,Код\r\n");

QByteArray heightText(LayerValue value)
{
    return value.isHeight() ? QByteArray::number(value.number()) : QByteArray();
}

QByteArray codeText(LayerValue value)
{
    if (value.isUnreadable()) {
        return "?";
    }
    return value.isCode() ? QByteArray::number(value.number()) : QByteArray();
}

QByteArray codeText(const Sample &sample)
{
    const QByteArray first = codeText(sample.first);
    const QByteArray second = codeText(sample.second);
    if (first.isEmpty() || second.isEmpty() || first == second) {
        return first.isEmpty() ? second : first;
    }
    return first + ' ' + second;
}

QByteArray channelText(RecordChannel channel)
{
    switch (channel) {
    case RecordChannel::Main:
        return kMainChannelName.toUtf8();
    case RecordChannel::Reserve:
        return kReserveChannelName.toUtf8();
    case RecordChannel::Unknown:
        break;
    }
    return {};
}

// Converting each time separately would take most of the time of an export; the offset of a zone
// changes at a full quarter of an hour only.
class LocalTimes
{
public:
    explicit LocalTimes(const QTimeZone &zone)
        : m_zone(zone)
    { }

    QByteArray text(qint64 time)
    {
        if (time / kQuarter != m_quarter) {
            m_quarter = time / kQuarter;
            const QDateTime utc = QDateTime::fromSecsSinceEpoch(m_quarter * kQuarter, Qt::UTC);
            m_offset = m_zone.offsetFromUtc(utc);
        }
        return QDateTime::fromSecsSinceEpoch(time, Qt::OffsetFromUTC, m_offset)
            .toString(Qt::ISODate)
            .replace(u'Z', QStringLiteral("+00:00"))
            .toLatin1();
    }

private:
    static constexpr qint64 kQuarter = 900;
    QTimeZone m_zone;
    qint64 m_quarter = -1;
    int m_offset = 0;
};

} // namespace

bool writeCsv(
    QIODevice &device, const History &history, qint64 from, qint64 to, const QTimeZone &zone)
{
    LocalTimes times(zone);
    QByteArray text = kHeader.toUtf8();
    bool written = true;
    const auto write = [&] {
        written = written && device.write(text) == text.size();
        text.clear();
    };
    history.forEach(from, to, [&](const Sample &sample) {
        text += times.text(sample.time) + ',' + heightText(sample.first) + ','
            + heightText(sample.second) + ',' + channelText(sample.channel) + ',' + codeText(sample)
            + "\r\n";
        if (text.size() >= kWriteLength) {
            write();
        }
    });
    write();
    return written;
}

} // namespace ork2
