// SPDX-License-Identifier: GPL-3.0-or-later
#include "eventjournal.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <array>

namespace ork2 {

namespace {

constexpr std::array<const char *, 5> kKinds{
    "below", "above", "silence", "resumed", "acknowledged"};
constexpr qsizetype kFields = 5;
constexpr qint64 kMaxRead = 1048576; // bytes at the end of the file

std::optional<JournalEntry> entryOf(const QByteArray &line)
{
    const QList<QByteArray> fields = line.trimmed().split('\t');
    if (fields.size() != kFields) {
        return std::nullopt;
    }
    const auto kind = std::find(kKinds.begin(), kKinds.end(), fields.at(2));
    JournalEntry entry;
    entry.time = QDateTime::fromString(QString::fromLatin1(fields.at(0)), Qt::ISODate);
    if (kind == kKinds.end() || !entry.time.isValid()) {
        return std::nullopt;
    }
    entry.unit = fields.at(1).toInt();
    entry.event = {static_cast<WatchEvent::Kind>(kind - kKinds.begin()),
        entry.time.toSecsSinceEpoch(), fields.at(3).toInt(), fields.at(4).toInt()};
    return entry;
}

} // namespace

EventJournal::EventJournal(QString path)
    : m_path(std::move(path))
{ }

QString EventJournal::append(int unit, const WatchEvent &event) const
{
    QDir().mkpath(QFileInfo(m_path).path()); // a failure is reported by open()
    const QDateTime local = QDateTime::fromSecsSinceEpoch(event.time);
    const QByteArray line = local.toOffsetFromUtc(local.offsetFromUtc())
                                .toString(Qt::ISODate)
                                .replace(u'Z', QStringLiteral("+00:00"))
                                .toLatin1()
        + '\t' + QByteArray::number(unit) + '\t' + kKinds.at(static_cast<std::size_t>(event.kind))
        + '\t' + QByteArray::number(event.threshold) + '\t' + QByteArray::number(event.height)
        + '\n';
    QFile file(m_path);
    if (!file.open(QIODevice::Append | QIODevice::Unbuffered) || file.write(line) != line.size()) {
        return QStringLiteral("Журнал событий не записан: %1").arg(file.errorString());
    }
    return {};
}

QList<JournalEntry> EventJournal::last(qsizetype count) const
{
    QFile file(m_path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    file.seek(qMax(qint64(0), file.size() - kMaxRead));
    const QList<QByteArray> lines = file.readAll().split('\n');
    QList<JournalEntry> entries;
    for (auto line = lines.crbegin(); line != lines.crend() && entries.size() < count; ++line) {
        if (const auto entry = entryOf(*line)) {
            entries.append(*entry);
        }
    }
    return entries;
}

QString eventText(const WatchEvent &event)
{
    switch (event.kind) {
    case WatchEvent::Kind::Below:
        return QStringLiteral("Облака ниже %1 м: высота %2 м")
            .arg(event.threshold)
            .arg(event.height);
    case WatchEvent::Kind::Above:
        return event.height > 0
            ? QStringLiteral("Облака снова выше %1 м: высота %2 м")
                  .arg(event.threshold)
                  .arg(event.height)
            : QStringLiteral("Облака снова выше %1 м: облаков нет").arg(event.threshold);
    case WatchEvent::Kind::Silence:
        return QStringLiteral("Нет данных от прибора");
    case WatchEvent::Kind::Resumed:
        return QStringLiteral("Данные от прибора снова поступают");
    case WatchEvent::Kind::Acknowledged:
        break;
    }
    return QStringLiteral("Тревога подтверждена");
}

} // namespace ork2
