// SPDX-License-Identifier: GPL-3.0-or-later
#include "journal.h"

#include <QDateTime>
#include <QLoggingCategory>

#include <cstdio>
#include <sys/stat.h>
#include <unistd.h>

namespace ork2::journal {

namespace {

bool g_toJournal = false;

// The system sets JOURNAL_STREAM to the device and inode of the stream. A child process whose
// output was redirected inherits the variable but not the stream.
bool errorOutputIsJournal()
{
    struct stat stream
    { };
    if (::fstat(STDERR_FILENO, &stream) != 0) {
        return false;
    }
    const QByteArray id = QByteArray::number(static_cast<quint64>(stream.st_dev)) + ':'
        + QByteArray::number(static_cast<quint64>(stream.st_ino));
    return qgetenv("JOURNAL_STREAM") == id;
}

Priority priorityOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
    case QtInfoMsg:
        return Priority::Info;
    case QtWarningMsg:
        return Priority::Warning;
    case QtCriticalMsg:
    case QtFatalMsg:
        break;
    }
    return Priority::Error;
}

void writeQtMessage(QtMsgType type, const QMessageLogContext & /*context*/, const QString &text)
{
    write(priorityOf(type), text);
}

} // namespace

void install()
{
    g_toJournal = errorOutputIsJournal();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    qInstallMessageHandler(writeQtMessage);
}

void write(Priority priority, const QString &text)
{
    const QString prefix = g_toJournal
        ? QStringLiteral("<%1>").arg(static_cast<int>(priority))
        : QDateTime::currentDateTime().toString(u"yyyy-MM-dd hh:mm:ss ");
    // A single call, so that lines of different threads are not mixed.
    std::fputs((prefix + text.simplified() + u'\n').toUtf8().constData(), stderr);
}

} // namespace ork2::journal
