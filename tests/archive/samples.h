// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "history.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTimeZone>

#include <unistd.h>

// Histories and day files for the tests of the archive.
namespace samples {

constexpr qint64 kStart = 1795305600; // 2026-11-22 00:00 UTC
const QDate kDate(2026, 11, 22);

inline QTimeZone moscow()
{
    return QTimeZone("Europe/Moscow");
}

inline ork2::Sample height(int minute, int first, int second = ork2::kNoValueHeight,
    ork2::RecordChannel channel = ork2::RecordChannel::Main)
{
    return {kStart + minute * 60, ork2::LayerValue(first), ork2::LayerValue(second), channel};
}

inline ork2::History history(std::vector<ork2::Sample> values)
{
    auto day = std::make_shared<ork2::Day>();
    day->date = kDate;
    day->samples = std::move(values);
    ork2::History history;
    history.set(day);
    return history;
}

// The rights of another user while it exists, because root may read everything.
class OtherUser
{
public:
    OtherUser()
        : m_user(geteuid())
    {
        if (m_user == 0) {
            m_changed = setresuid(kNobody, kNobody, 0) == 0;
        }
    }
    OtherUser(const OtherUser &) = delete;
    OtherUser &operator=(const OtherUser &) = delete;
    ~OtherUser()
    {
        if (m_changed && setresuid(0, 0, 0) != 0) {
            qFatal("the rights cannot be restored");
        }
    }

private:
    static constexpr uid_t kNobody = 65534;
    uid_t m_user;
    bool m_changed = false;
};

inline void write(const QString &path, const QByteArray &text)
{
    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

} // namespace samples
