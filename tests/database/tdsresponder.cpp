// SPDX-License-Identifier: GPL-3.0-or-later
#include "tdsresponder.h"

#include "timeout.h"

#include <QtTest/QtTest>

#include <algorithm>

namespace {

const QString kPython = QStringLiteral(PYTHON);
const QString kScript = QStringLiteral(RESPONDER);

} // namespace

TdsResponder::TdsResponder(const QString &mode, const QString &user, const QString &password)
{
    QStringList arguments{kScript, QStringLiteral("serve"), QStringLiteral("--mode"), mode,
        QStringLiteral("--store"), m_folder.filePath(QStringLiteral("rows"))};
    if (!user.isEmpty()) {
        arguments << QStringLiteral("--user") << user << QStringLiteral("--password") << password;
    }
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(kPython, arguments);
    if (!waitFor("ready")) {
        QTest::qFail("The database server of the test did not start", __FILE__, __LINE__);
        return;
    }
    m_port = events().constFirst().mid(static_cast<qsizetype>(qstrlen("ready ")));
}

TdsResponder::~TdsResponder()
{
    m_process.closeWriteChannel();
    if (!m_process.waitForFinished(kTimeoutMs)) {
        m_process.kill();
        m_process.waitForFinished();
    }
}

void TdsResponder::setMode(const QString &mode)
{
    m_process.write("mode " + mode.toUtf8() + "\n");
    if (!waitFor("mode " + mode.toUtf8())) {
        QTest::qFail("The database server of the test does not answer", __FILE__, __LINE__);
    }
}

QByteArrayList TdsResponder::events()
{
    m_output += m_process.readAllStandardOutput();
    QByteArrayList lines = m_output.split('\n');
    lines.removeLast(); // not complete yet
    return lines;
}

qsizetype TdsResponder::count(const QByteArray &event)
{
    const QByteArrayList lines = events();
    return std::count_if(lines.cbegin(), lines.cend(),
        [&event](const QByteArray &line) { return line.startsWith(event); });
}

bool TdsResponder::waitFor(const QByteArray &event)
{
    const qsizetype before = count(event);
    while (count(event) == before) {
        if (!m_process.waitForReadyRead(kTimeoutMs)) {
            return false;
        }
    }
    return true;
}

QByteArrayList TdsResponder::rows() const
{
    QProcess dump;
    dump.start(kPython,
        {kScript, QStringLiteral("rows"), QStringLiteral("--store"),
            m_folder.filePath(QStringLiteral("rows"))});
    dump.waitForFinished(kTimeoutMs);
    QByteArrayList rows = dump.readAllStandardOutput().split('\n');
    rows.removeLast(); // empty text after the last line
    return rows;
}
