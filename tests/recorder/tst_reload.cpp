// SPDX-License-Identifier: GPL-3.0-or-later
// The configuration of the upload changes while the database server does not answer: the
// measurement goes on with real timers, and no row is lost or sent twice.
#include "pseudoterminal.h"
#include "recorder.h"
#include "recorderprobe.h"
#include "stationprobe.h"
#include "tdsresponder.h"
#include "testdriver.h"
#include "timeout.h"

#include <QElapsedTimer>
#include <QFile>
#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <memory>

using ork2::Recorder;

namespace {

const QByteArray kFrame = QByteArrayLiteral("H004201350\r");
constexpr int kReadingMs = 200;      // the instrument of the test is faster than the real one
constexpr int kReloadLimitMs = 2500; // half of a timeout of the server
constexpr int kMinuteLimitMs = 4000; // the minute is due one to two seconds after the reload
const QDateTime kMinute(QDate(2024, 5, 1), QTime(12, 1));

qint64 g_clockOffsetMs = 0;

QDateTime shiftedNow()
{
    return QDateTime::currentDateTime().addMSecs(g_clockOffsetMs);
}

// Sets the clock of the station; the time runs on.
void setClock(const QDateTime &now)
{
    g_clockOffsetMs = QDateTime::currentDateTime().msecsTo(now);
}

} // namespace

class tst_reload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void serverHangs_minuteIsWrittenInTime_data();
    void serverHangs_minuteIsWrittenInTime();
    void uploadOff_serverHangs_returnsAtOnce();

private:
    void configure(const QString &station, bool upload = true);
    void startRecorder();
    void waitUntilTheServerHangs(const QString &mode);
    void reload();
    void writeMinute(const QDateTime &minute);
    [[nodiscard]] QByteArrayList stations() const;

    QTemporaryDir m_drivers;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TdsResponder> m_server;
    std::unique_ptr<ork2::PseudoTerminal> m_line;
    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<ork2::StationProbe> m_station;
    std::unique_ptr<QSignalSpy> m_written;
    QTimer m_readings;
};

void tst_reload::initTestCase()
{
    QVERIFY2(ork2::useTestDriver(m_drivers.path()), "The package tdsodbc is missing");
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    connect(&m_readings, &QTimer::timeout, this, [this] { (void)m_line->write(kFrame); });
}

void tst_reload::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_line = std::make_unique<ork2::PseudoTerminal>();
    QVERIFY(m_line->open());
    m_readings.start(kReadingMs);
}

void tst_reload::cleanup()
{
    m_readings.stop();
    m_written.reset();
    m_station.reset();
    if (m_recorder) {
        m_recorder->end();
    }
    m_recorder.reset();
    m_server.reset();
}

void tst_reload::configure(const QString &station, bool upload)
{
    QFile file(m_folder->filePath(QStringLiteral("r.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("[line]\nport=%1\n[files]\nunit=7\nfolder=%2\n"
                              "[database]\nupload=%3\nhost=127.0.0.1\nport=%4\nstation=%5\n")
                   .arg(m_line->path(), m_folder->path(), QVariant(upload).toString(),
                       QString::fromLatin1(m_server->port()), station)
                   .toUtf8());
}

void tst_reload::startRecorder()
{
    configure(QStringLiteral("before"));
    const QString file = m_folder->filePath(QStringLiteral("r.conf"));
    const ork2::ConfigurationResult result = ork2::readConfiguration(file);
    QVERIFY2(result.configuration, qPrintable(result.error));
    m_recorder = std::make_unique<Recorder>(*result.configuration, file);
    ork2::Station &station = ork2::RecorderProbe(*m_recorder).station();
    m_station = std::make_unique<ork2::StationProbe>(station);
    setClock(kMinute.addSecs(-30));
    m_station->setClock(shiftedNow);
    m_written = std::make_unique<QSignalSpy>(&station, &ork2::Station::lineWritten);
    QSignalSpy measuring(&station, &ork2::Station::lineBack);
    m_recorder->start();
    QTRY_COMPARE_WITH_TIMEOUT(measuring.count(), 1, kTimeoutMs);
}

// Lets the save timer of the station write the line of this minute.
void tst_reload::writeMinute(const QDateTime &minute)
{
    const auto before = m_written->count();
    setClock(minute.addMSecs(-1500));
    QElapsedTimer clock;
    clock.start();
    QTRY_COMPARE_WITH_TIMEOUT(m_written->count(), before + 1, kTimeoutMs);
    QVERIFY2(clock.elapsed() < kMinuteLimitMs, qPrintable(QString::number(clock.elapsed())));
}

void tst_reload::waitUntilTheServerHangs(const QString &mode)
{
    writeMinute(kMinute);
    // The server looks at its mode again when the statement has arrived.
    const auto hangs = [this, &mode] {
        return m_server->count(mode == u"silent-statement" ? "call" : "connected") > 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hangs(), kTimeoutMs);
}

void tst_reload::reload()
{
    QElapsedTimer clock;
    clock.start();
    m_recorder->reload();
    QVERIFY2(clock.elapsed() < kReloadLimitMs, qPrintable(QString::number(clock.elapsed())));
}

// The station of each row on the server, oldest first.
QByteArrayList tst_reload::stations() const
{
    QByteArrayList found;
    const QByteArrayList rows = m_server->rows();
    for (const QByteArray &row : rows) {
        found << row.split('"').value(5);
    }
    return found;
}

void tst_reload::serverHangs_minuteIsWrittenInTime_data()
{
    QTest::addColumn<QString>("mode");
    QTest::newRow("in the login") << QStringLiteral("silent-prelogin");
    QTest::newRow("in the statement") << QStringLiteral("silent-statement");
}

void tst_reload::serverHangs_minuteIsWrittenInTime()
{
    QFETCH(QString, mode);
    m_server = std::make_unique<TdsResponder>(mode);
    startRecorder();
    waitUntilTheServerHangs(mode);
    configure(QStringLiteral("between"));
    reload();
    m_server->setMode(QStringLiteral("ok"));
    writeMinute(kMinute.addSecs(60));
    QVERIFY(m_server->rows().isEmpty()); // the uploader of the first configuration is still waiting
    configure(QStringLiteral("after"));
    reload();
    writeMinute(kMinute.addSecs(120));
    // The last uploader sends the rows of all minutes, with the station of its configuration.
    QTRY_COMPARE_WITH_TIMEOUT(stations(), QByteArrayList(3, "after"), kTimeoutMs);
}

void tst_reload::uploadOff_serverHangs_returnsAtOnce()
{
    m_server = std::make_unique<TdsResponder>(QStringLiteral("silent-statement"));
    startRecorder();
    waitUntilTheServerHangs(QStringLiteral("silent-statement"));
    configure(QStringLiteral("before"), false);
    reload();
    m_server->setMode(QStringLiteral("ok"));
    writeMinute(kMinute.addSecs(60));
    // Switched on again, perhaps while the first uploader is still waiting.
    configure(QStringLiteral("after"));
    reload();
    writeMinute(kMinute.addSecs(120));
    QTRY_COMPARE_WITH_TIMEOUT(stations(), QByteArrayList(2, "after"), kTimeoutMs);
}

QTEST_GUILESS_MAIN(tst_reload)
#include "tst_reload.moc"
