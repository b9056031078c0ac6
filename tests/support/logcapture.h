// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMutex>
#include <QStringList>
#include <QtGlobal>

// Records the debug log of all threads during its lifetime. Only one object may exist at a time.
class LogCapture
{
public:
    LogCapture()
    {
        s_current = this;
        m_previous = qInstallMessageHandler(keep);
    }
    ~LogCapture()
    {
        qInstallMessageHandler(m_previous);
        s_current = nullptr;
    }
    Q_DISABLE_COPY_MOVE(LogCapture)

    [[nodiscard]] QStringList lines() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_lines;
    }

    [[nodiscard]] QStringList warnings() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_warnings;
    }

private:
    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        const QMutexLocker lock(&s_current->m_mutex);
        s_current->m_lines << text;
        if (type != QtDebugMsg && type != QtInfoMsg) {
            s_current->m_warnings << text;
        }
    }

    static inline LogCapture *s_current = nullptr;
    mutable QMutex m_mutex;
    QStringList m_lines;
    QStringList m_warnings;
    QtMessageHandler m_previous = nullptr;
};
