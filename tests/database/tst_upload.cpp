// SPDX-License-Identifier: GPL-3.0-or-later
// Uploads rows from the file writer to the table of a server through a real ODBC driver, and tests
// all kinds of server failures.
#include "databasesql.h"
#include "datalogger.h"

#include "dataloggerprobe.h"
#include "logcapture.h"
#include "odbcdriveralias.h"
#include "profile.h"
#include "sharedvalues.h"
#include "tdsresponder.h"
#include "timeout.h"
#include "uploadwatch.h"

#include <QDir>
#include <QPointer>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QTest>
#include <QThread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

constexpr int kOpenLimitMs = ork2::kLoginTimeoutSeconds * 1000;
constexpr int kInsertLimitMs = ork2::kInsertTimeoutSeconds * 1000;
constexpr double kBlockLimitMs = 50.0;

// Captures the standard output of the program during its lifetime.
class StandardOutput
{
public:
    StandardOutput()
        : m_before(::dup(STDOUT_FILENO))
    {
        std::fflush(stdout);
        m_diverted = m_file.open() && ::dup2(m_file.handle(), STDOUT_FILENO) >= 0;
    }
    ~StandardOutput()
    {
        std::fflush(stdout);
        ::dup2(m_before, STDOUT_FILENO);
        ::close(m_before);
    }
    Q_DISABLE_COPY_MOVE(StandardOutput)

    [[nodiscard]] QByteArray text()
    {
        std::fflush(stdout);
        return m_diverted && m_file.seek(0) ? m_file.readAll()
                                            : QByteArrayLiteral("(not diverted)");
    }

private:
    int m_before;
    QTemporaryFile m_file;
    bool m_diverted = false;
};

// Returns the number of runnable threads per core, at least 1: on a busy machine, the owner of a
// lock may have to wait for the CPU.
double loadPerCore()
{
    double load = 0;
    getloadavg(&load, 1);
    return std::max(1.0, load / QThread::idealThreadCount());
}

const QString kConnectionFailed = QStringLiteral("SQL connection failed!");
const QString kDataFailed = QStringLiteral("SQL data failed!");
const QString kStatementStart =
    QStringLiteral("INSERT [UVIndex].[dbo].[UVI] ([Date], [Time], [Station], [Dev_id], [Voltage], "
                   "[Temperature], [Radiation], [UVIndex]) VALUES (");

// Reserves a loopback port on which no program listens.
class ClosedPort
{
public:
    ClosedPort()
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t length = sizeof(address);
        bind(m_socket, reinterpret_cast<sockaddr *>(&address), length);
        getsockname(m_socket, reinterpret_cast<sockaddr *>(&address), &length);
        m_port = QByteArray::number(ntohs(address.sin_port));
    }
    ~ClosedPort() { close(m_socket); }
    Q_DISABLE_COPY_MOVE(ClosedPort)

    [[nodiscard]] QByteArray port() const { return m_port; }

private:
    int m_socket = socket(AF_INET, SOCK_STREAM, 0);
    QByteArray m_port;
};

} // namespace

class tst_upload : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void server_answersAnIndependentClient();
    void row_reachesTheTable();
    void serverSettings_serverAnswers_isReported();
    void row_fromReading_reachesTheTable();
    void stationText_reachesTheTable();
    void quoteInStation_isNotEscaped();
    void credentials_reachTheServer_butNotTheLog();
    void brokenServer_isReported_andLeavesNothing_data();
    void brokenServer_isReported_andLeavesNothing();
    void refusedConnection_isReported_withoutServerName();
    void rowsDuringUpload_areUploadedInOrder();
    void tooManyRows_dropTheOldest_andReport();
    void flagReset_waitingRowsAreUploaded();
    void unwritableFile_rowIsUploaded();
    void manyRows_areUploadedOneAtATime();

private:
    void serve(const QString &mode = QStringLiteral("ok"), const QString &user = {},
        const QString &password = {});
    void changeMode(const QString &mode);
    void mark(const QString &time);
    [[nodiscard]] QByteArrayList storedRows();
    void verifyNothingIsLeft();

    QTemporaryDir m_folder;
    std::unique_ptr<QTemporaryDir> m_base;
    std::unique_ptr<LogCapture> m_log;
    std::unique_ptr<TdsResponder> m_server;
    std::unique_ptr<UploadWatch> m_watch;
    std::unique_ptr<datalogger> m_writer;
    QStringList m_debugLog;
    QString m_result; // printed at the end of the test
};

void tst_upload::initTestCase()
{
    QVERIFY2(QFile::exists(QStringLiteral(TDS_DRIVER)), "The package tdsodbc is missing");
    QFile drivers(m_folder.filePath(QStringLiteral("odbcinst.ini")));
    QVERIFY(drivers.open(QIODevice::WriteOnly));
    drivers.write("[ODBC Driver 17 for SQL Server]\nDriver=" TDS_DRIVER "\n");
    drivers.close();
    qputenv("ODBCSYSINI", m_folder.path().toUtf8());
    qputenv("ODBCINI", m_folder.filePath(QStringLiteral("odbc.ini")).toUtf8());
    qputenv("FREETDSCONF", "/dev/null");
    qputenv("TDSHOST", "127.0.0.1"); // "localhost" may be two addresses, tried one after the other
    qputenv("TDSVER", "7.4");        // the driver would otherwise try old protocols first
    ork2::registerOdbcDriverAlias();
}

void tst_upload::init()
{
    m_base = std::make_unique<QTemporaryDir>();
    profile::clear();
    profile::store(ork2::kNamePath, m_base->path());
    profile::store(ork2::kUnitNumber, QStringLiteral("7"));
    profile::store(ork2::kServerHost, QStringLiteral("127.0.0.1"));
    noReplyCounter.storeRelaxed(0);
    m_debugLog.clear();
    m_log = std::make_unique<LogCapture>();
    m_writer = std::make_unique<datalogger>();
    connect(m_writer.get(), &datalogger::debugLog, this,
        [this](const QString &text) { m_debugLog << text; });
    m_writer->DataCloudRecieved(QStringLiteral("0120"), QStringLiteral("2500"));
    mark(QStringLiteral("00:00:00")); // create the day file before the measurements
    m_writer->sqlChkBox(true);
    m_watch = std::make_unique<UploadWatch>();
}

void tst_upload::cleanup()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_watch->idle(), kTimeoutMs);
    m_writer.reset();
    m_watch.reset();
    m_server.reset();
    m_log.reset();
    if (!m_result.isEmpty()) {
        qInfo("%s: %s", QTest::currentTestFunction(), qPrintable(m_result));
        m_result.clear();
    }
}

void tst_upload::serve(const QString &mode, const QString &user, const QString &password)
{
    m_server = std::make_unique<TdsResponder>(mode, user, password);
    qputenv("TDSPORT", m_server->port());
    m_watch = std::make_unique<UploadWatch>(); // restart its clocks
}

void tst_upload::changeMode(const QString &mode)
{
    m_server->setMode(mode);
    m_watch->excludeWaiting();
}

void tst_upload::mark(const QString &time)
{
    m_writer->DateTimeRecieve(QStringLiteral("2024/05/01"), time);
}

QByteArrayList tst_upload::storedRows()
{
    const QByteArrayList rows = m_server->rows();
    m_watch->excludeWaiting();
    return rows;
}

void tst_upload::verifyNothingIsLeft()
{
    QTRY_VERIFY_WITH_TIMEOUT(m_watch->idle(), kTimeoutMs);
    QCOMPARE(m_watch->finished(), m_watch->started());
    QCOMPARE(DataloggerProbe(*m_writer).uploadThread(), nullptr);
    QCOMPARE(DataloggerProbe(*m_writer).uploader(), nullptr);
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    QVERIFY2(m_watch->longestBlockMs() < kBlockLimitMs * loadPerCore(),
        qPrintable(QString::number(m_watch->longestBlockMs())));
}

void tst_upload::server_answersAnIndependentClient()
{
    QVERIFY2(QFile::exists(QStringLiteral(TSQL)), "The package freetds-bin is missing");
    serve(QStringLiteral("ok"), QStringLiteral("user"), QStringLiteral("secret"));
    const auto client = [this](const QString &password, const QByteArray &statement) {
        QProcess process;
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QStringLiteral(TSQL),
            {QStringLiteral("-H"), QStringLiteral("127.0.0.1"), QStringLiteral("-p"),
                QString::fromLatin1(m_server->port()), QStringLiteral("-U"), QStringLiteral("user"),
                QStringLiteral("-P"), password});
        process.write(statement + "\ngo\nexit\n");
        process.closeWriteChannel();
        process.waitForFinished(kTimeoutMs);
        return process.readAll();
    };
    const QString secret = QStringLiteral("secret");
    const QByteArray good = kStatementStart.toUtf8()
        + "'2024-05-01', '12:30:00.000', 'Ж', 7, 1.500, -20.250, 3.000, 0.123)";
    const QByteArray answer = client(secret, good);
    QVERIFY2(!answer.contains("Msg "), answer);
    QVERIFY(client(QStringLiteral("wrong"), good).contains("Login failed"));
    // Another table, columns in another order, a value of another type, a missing value, and
    // others.
    for (const auto &[before, after] : QList<std::pair<QByteArray, QByteArray>>{{"[UVI]", "[UVX]"},
             {"[Date], [Time]", "[Time], [Date]"}, {" 7,", " '7',"}, {", 3.000", ""},
             {"1.500", "1.5"}, {"2024-05-01", "2024/05/01"}}) {
        const QByteArray bad = QByteArray(good).replace(before, after);
        QVERIFY(bad != good);
        QVERIFY2(client(secret, bad).contains("Incorrect syntax"), bad);
    }
    QCOMPARE(storedRows(),
        QByteArrayList({R"(["2024-05-01", "12:30:00.000", "Ж", 7, 1.5, -20.25, 3.0, 0.123])"}));
}

void tst_upload::row_reachesTheTable()
{
    serve();
    // Values that do not occur in readings, separated by tabs like the fields of a line.
    m_writer->DataCloudRecieved(QStringLiteral("1.5"), QStringLiteral("20.25\t3.0\t0.1234"));
    QByteArray output;
    {
        StandardOutput diverted;
        mark(QStringLiteral("12:30:00"));
        const QPointer<QThread> thread = DataloggerProbe(*m_writer).uploadThread();
        const QPointer<databasesql> uploader = DataloggerProbe(*m_writer).uploader();
        QVERIFY(thread && uploader);
        QTRY_VERIFY_WITH_TIMEOUT(!thread && !uploader, kTimeoutMs);
        output = diverted.text();
    }
    const QString statement = kStatementStart
        + QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.123)");
    QCOMPARE(m_watch->texts(), QStringList{statement});
    QCOMPARE(m_debugLog, QStringList{statement});
    QCOMPARE(output, statement.toUtf8() + '\n');
    QCOMPARE(m_watch->finished(), 1);
    verifyNothingIsLeft();
    QCOMPARE(storedRows(),
        QByteArrayList({R"(["2024-05-01", "12:30:00.000", "-", 7, 1.5, 20.25, 3.0, 0.123])"}));
    QVERIFY(m_log->lines().contains(QStringLiteral("Connection is ok")));
    QVERIFY(m_log->lines().contains(QStringLiteral("SQL bind \"%1\"").arg(statement)));
    // Querying the name of the connection opens a second connection.
    QCOMPARE(m_server->count("login"), 2);
    QTRY_COMPARE(m_server->count("gone"), 2);
}

void tst_upload::serverSettings_serverAnswers_isReported()
{
    serve();
    {
        databasesql uploader;
        QSignalSpy texts(&uploader, &databasesql::logSQLData);
        uploader.ServerSettings(QStringLiteral("10.0.0.1"), 99, QString(), QString());
        QCOMPARE(texts, (QList<QVariantList>{{QStringLiteral("SQL bind")}}));
        QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    }
    QCOMPARE(storedRows(), QByteArrayList());
}

void tst_upload::row_fromReading_reachesTheTable()
{
    serve();
    m_writer->DataCloudRecieved(QStringLiteral("0420"), QStringLiteral("5000"));
    m_writer->DataCloudChanel(QStringLiteral("1"));
    noReplyCounter.storeRelaxed(ork2::kReplyAgeLimit); // uploaded, but not written to the file
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(storedRows(),
        QByteArrayList({R"(["2024-05-01", "08:15:00.000", "-", 7, 420.0, 0.0, 0.0, 0.0])"}));
    verifyNothingIsLeft();
}

void tst_upload::stationText_reachesTheTable()
{
    serve();
    profile::store(ork2::kServerStation, QStringLiteral("Станция №4 ?:a%5"));
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(storedRows(),
        QByteArrayList(
            {R"(["2024-05-01", "08:15:00.000", "Станция №4 ?:a%5", 7, 120.0, 2500.0, 0.0, 0.0])"}));
    verifyNothingIsLeft();
}

void tst_upload::quoteInStation_isNotEscaped()
{
    serve();
    profile::store(ork2::kServerStation, QStringLiteral("O'Hara"));
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(m_watch->texts(), QStringList{kDataFailed});
    QTRY_COMPARE(m_server->count("refused"), 1);
    QVERIFY(m_server->events().join('\n').contains("'08:15:00.000', 'O'Hara', 7"));
    QCOMPARE(storedRows(), QByteArrayList());
    verifyNothingIsLeft();
}

void tst_upload::credentials_reachTheServer_butNotTheLog()
{
    const QString password = QStringLiteral("пароль-Zq9");
    serve(QStringLiteral("ok"), QStringLiteral("метео"), password);
    profile::store(ork2::kServerHost, QStringLiteral("localhost"));
    profile::store(ork2::kServerUser, QStringLiteral("метео"));
    profile::store(ork2::kServerPassword, password);
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(storedRows().size(), 1);
    QTRY_COMPARE(m_server->count(R"(login ["метео", "пароль-Zq9", "UVIndex"])"), 2);
    const QString statement = m_watch->texts().value(0);
    for (const QString &line : m_log->lines()) {
        QVERIFY2(!line.contains(password) && !line.contains(QStringLiteral("localhost"))
                && !line.contains(QStringLiteral("метео")),
            qPrintable(line));
        QVERIFY2(!line.contains(QStringLiteral("VALUES"))
                || line == QStringLiteral("SQL bind \"%1\"").arg(statement),
            qPrintable(line));
    }
    verifyNothingIsLeft();
}

void tst_upload::brokenServer_isReported_andLeavesNothing_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("atLeastMs");
    QTest::addColumn<int>("atMostMs");
    const auto add = [](const char *name, const char *mode, const QString &text, int atLeast) {
        QTest::newRow(name) << QString::fromLatin1(mode) << text << atLeast << atLeast + 4000;
    };
    // A connection that does not open is tried twice: the second time when its name is queried.
    const int opens = 2 * kOpenLimitMs;
    // The driver requests the server to cancel, and returns when that times out as well.
    const int statement = 2 * kInsertLimitMs;
    add("drops all packets", "deaf", kConnectionFailed, opens);
    add("silent after accepting", "silent-accept", kConnectionFailed, opens);
    add("silent after pre-login", "silent-prelogin", kConnectionFailed, opens);
    add("silent after login", "silent-login", kDataFailed, statement);
    add("silent during the statement", "silent-statement", kDataFailed, statement);
    add("wrong login", "login-wrong", kConnectionFailed, 0);
    add("disconnects at login", "die-login", kConnectionFailed, 0);
    add("disconnects during the statement", "die-statement", kDataFailed, 0);
    add("answers with an error", "error-statement", kDataFailed, 0);
}

void tst_upload::brokenServer_isReported_andLeavesNothing()
{
    QFETCH(QString, mode);
    QFETCH(QString, text);
    QFETCH(int, atLeastMs);
    QFETCH(int, atMostMs);
    profile::store(ork2::kServerHost, QStringLiteral("localhost"));
    profile::store(ork2::kServerPassword, QStringLiteral("Zq9secret"));
    serve(mode, QStringLiteral("uvi"), QStringLiteral("Zq9secret"));
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    m_result = QStringLiteral("%1, %2 ms")
                   .arg(QString::fromUtf8(QTest::currentDataTag()))
                   .arg(m_watch->finishedAfterMs());
    QVERIFY(m_watch->finishedAfterMs() >= atLeastMs);
    QVERIFY(m_watch->finishedAfterMs() < atMostMs);
    verifyNothingIsLeft();
    QCOMPARE(m_watch->started(), 1);
    QCOMPARE(m_watch->finished(), 1);
    QCOMPARE(m_watch->texts(), QStringList{text});
    QCOMPARE(m_debugLog, QStringList{text});
    QCOMPARE(storedRows(), QByteArrayList());
    for (const QString &line : m_log->lines()) {
        QVERIFY2(!line.contains(QStringLiteral("Zq9secret"))
                && !line.contains(QStringLiteral("localhost")),
            qPrintable(line));
    }
}

void tst_upload::refusedConnection_isReported_withoutServerName()
{
    const ClosedPort closed;
    qputenv("TDSPORT", closed.port());
    profile::store(ork2::kServerHost, QStringLiteral("localhost"));
    mark(QStringLiteral("08:15:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(m_watch->texts(), QStringList{kConnectionFailed});
    QVERIFY(m_watch->finishedAfterMs() < 4000);
    verifyNothingIsLeft();
    QCOMPARE(m_log->lines().filter(QStringLiteral("localhost")), QStringList());
    // The line is still written to the file.
    QFile file(m_base->filePath(QStringLiteral("Data/ORK-2 N7/2024.05.01.txt")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().endsWith("\r\n08:15:00\t0120\t2500\tОсновной"));
}

void tst_upload::rowsDuringUpload_areUploadedInOrder()
{
    serve(QStringLiteral("silent-statement"));
    mark(QStringLiteral("08:00:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("call"), 1, kTimeoutMs);
    mark(QStringLiteral("08:01:00"));
    mark(QStringLiteral("08:02:00"));
    mark(QStringLiteral("08:03:00"));
    QCOMPARE(DataloggerProbe(*m_writer).waitingRows(), 3);
    QCOMPARE(m_watch->started(), 1);
    changeMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 4, kTimeoutMs);
    verifyNothingIsLeft();
    QCOMPARE(DataloggerProbe(*m_writer).waitingRows(), 0);
    QCOMPARE(m_watch->texts().value(0), kDataFailed); // that row is not retried
    QCOMPARE(storedRows(),
        QByteArrayList({R"(["2024-05-01", "08:01:00.000", "-", 7, 120.0, 2500.0, 0.0, 0.0])",
            R"(["2024-05-01", "08:02:00.000", "-", 7, 120.0, 2500.0, 0.0, 0.0])",
            R"(["2024-05-01", "08:03:00.000", "-", 7, 120.0, 2500.0, 0.0, 0.0])"}));
}

void tst_upload::tooManyRows_dropTheOldest_andReport()
{
    serve(QStringLiteral("silent-statement"));
    mark(QStringLiteral("07:00:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("call"), 1, kTimeoutMs);
    const auto minute = [](qsizetype n) {
        return QTime(8, 0).addSecs(static_cast<int>(n) * 60).toString(QStringLiteral("hh:mm:ss"));
    };
    for (qsizetype n = 0; n < ork2::kWaitingRowsLimit; ++n) {
        mark(minute(n));
    }
    QCOMPARE(m_debugLog, QStringList());
    mark(minute(ork2::kWaitingRowsLimit));
    mark(minute(ork2::kWaitingRowsLimit + 1));
    const QStringList messages{
        QStringLiteral("Upload queue is full, dropped the row of 2024-05-01 08:00:00"),
        QStringLiteral("Upload queue is full, dropped the row of 2024-05-01 08:01:00")};
    QCOMPARE(m_debugLog, messages);
    QCOMPARE(m_log->lines().filter(QStringLiteral("Upload queue")).size(), 2);
    QCOMPARE(DataloggerProbe(*m_writer).waitingRows(), ork2::kWaitingRowsLimit);
    changeMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(
        m_watch->finished(), static_cast<int>(ork2::kWaitingRowsLimit) + 1, 2 * kTimeoutMs);
    verifyNothingIsLeft();
    const QByteArrayList rows = storedRows();
    QCOMPARE(rows.size(), ork2::kWaitingRowsLimit);
    for (qsizetype n = 0; n < rows.size(); ++n) {
        QVERIFY(rows[n].contains('"' + minute(n + 2).toUtf8() + ".000\""));
    }
}

void tst_upload::flagReset_waitingRowsAreUploaded()
{
    serve();
    mark(QStringLiteral("08:00:00"));
    mark(QStringLiteral("08:01:00"));
    m_writer->sqlChkBox(false);
    mark(QStringLiteral("08:02:00"));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 2, kTimeoutMs);
    verifyNothingIsLeft();
    QCOMPARE(m_watch->started(), 2);
    QCOMPARE(storedRows().size(), 2);
}

void tst_upload::unwritableFile_rowIsUploaded()
{
    serve();
    QFile obstacle(m_base->filePath(QStringLiteral("Data")));
    QVERIFY(QDir(obstacle.fileName()).removeRecursively());
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    QSignalSpy lamp(m_writer.get(), &datalogger::dataLedStatus);
    mark(QStringLiteral("08:00:00"));
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), 1, kTimeoutMs);
    QCOMPARE(storedRows().size(), 1);
    verifyNothingIsLeft();
}

void tst_upload::manyRows_areUploadedOneAtATime()
{
    constexpr int kRows = 300;
    serve();
    for (int n = 0; n < kRows; ++n) {
        QTRY_VERIFY_WITH_TIMEOUT(
            DataloggerProbe(*m_writer).waitingRows() < ork2::kWaitingRowsLimit, kTimeoutMs);
        mark(QTime(0, 0).addSecs(n).toString(QStringLiteral("hh:mm:ss")));
        QVERIFY(m_watch->started() - m_watch->finished() <= 1);
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_watch->finished(), kRows, 2 * kTimeoutMs);
    m_result =
        QStringLiteral("%1 rows a second")
            .arg(kRows * 1000.0 / static_cast<double>(m_watch->finishedAfterMs()), 0, 'f', 0);
    verifyNothingIsLeft();
    const QByteArrayList rows = storedRows();
    QCOMPARE(rows.size(), kRows);
    QVERIFY(rows.first().contains("00:00:00.000"));
    QVERIFY(rows.last().contains("00:04:59.000"));
    // Two connections per row, all closed.
    QTRY_COMPARE(m_server->count("connected"), 2 * kRows);
    QTRY_COMPARE(m_server->count("gone"), 2 * kRows);
}

QTEST_GUILESS_MAIN(tst_upload)
#include "tst_upload.moc"
