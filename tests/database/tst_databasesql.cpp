// SPDX-License-Identifier: GPL-3.0-or-later
#include "databasesql.h"

#include "logcapture.h"
#include "odbcdriveralias.h"
#include "profile.h"

#include <QDebug>
#include <QElapsedTimer>
#include <QMetaMethod>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTest>

class DatabaseSqlProbe
{
public:
    explicit DatabaseSqlProbe(databasesql &uploader)
        : m_uploader(uploader)
    { }

    // Returns the statement for a row and the stored station.
    [[nodiscard]] QString statement(const QVariantList &row)
    {
        m_uploader.inserIntoTable(row); // without a connection, only the text is created
        return m_uploader.statement(row);
    }
    [[nodiscard]] QVariantList rowValues() const { return m_uploader.m_rowValues; }
    [[nodiscard]] QString host() const { return m_uploader.m_host; }
    [[nodiscard]] bool connectToServer() { return m_uploader.connectToServer(); }
    [[nodiscard]] const QSqlDatabase &db() const { return m_uploader.m_db; }
    void closeConnection() { m_uploader.closeConnection(); }

private:
    databasesql &m_uploader;
};

namespace {

const QVariantList kRow{
    QStringLiteral("2024-05-01"), QStringLiteral("12:30:00"), 7, 1.5, 20.25, 3.0, 0.1234};
const QString kStatementStart =
    QStringLiteral("INSERT [UVIndex].[dbo].[UVI] ([Date], [Time], [Station], [Dev_id], [Voltage], "
                   "[Temperature], [Radiation], [UVIndex]) VALUES (");

} // namespace

// The list of drivers as the uploader logs it. Other drivers of this machine may precede QODBC3.
static QString presentDrivers()
{
    QString text;
    QDebug(&text) << QSqlDatabase::drivers();
    return text.trimmed();
}

class tst_databasesql : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void metaObject_members_areInDeclaredOrder();
    void driverName_isRegistered_besideQtsName();
    void statement_ofRow_data();
    void statement_ofRow();
    void station_isReadForEachStatement();
    void noStoredParameters_defaultsAreUsed();
    void storedParameters_areReadForEachConnection();
    void serverSettings_haveNoEffect();
    void serverSettings_emptyArguments_areNotLogged();
    void makeSqlStr_replacesTheRow();
    void statementWithoutConnection_fails();
    void unknownDriver_failsToConnect();
    void process_pausesItsThread_thenFinishes();
};

void tst_databasesql::initTestCase()
{
    // Ignore the driver manager's settings, so that no test connects to a server of this machine.
    qputenv("ODBCSYSINI", "/nonexistent");
    qputenv("ODBCINI", "/nonexistent");
    ork2::registerOdbcDriverAlias();
}

void tst_databasesql::init()
{
    profile::clear();
}

void tst_databasesql::metaObject_members_areInDeclaredOrder()
{
    const QMetaObject &meta = databasesql::staticMetaObject;
    QByteArrayList methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QByteArray signature = meta.method(i).methodSignature();
        signature.replace("QList<QVariant>", "QVariantList"); // Qt 6.8 resolves the alias
        methods << meta.method(i).typeName() + QByteArray(" ") + signature;
    }
    QCOMPARE(methods,
        QByteArrayList({"void logSQLData(QString)", "void finished()",
            "void ServerSettings(QString,int,QString,QString)", "bool inserIntoTable(QVariantList)",
            "void process()", "void serverSend()", "void makeSqlStr(QVariantList)"}));
}

void tst_databasesql::driverName_isRegistered_besideQtsName()
{
    QVERIFY(QSqlDatabase::drivers().contains(QStringLiteral("QODBC3")));
    QVERIFY(QSqlDatabase::drivers().contains(QStringLiteral("QODBC")));
    QVERIFY(QSqlDatabase::isDriverAvailable(QStringLiteral("QODBC3")));
}

void tst_databasesql::statement_ofRow_data()
{
    QTest::addColumn<QVariantList>("row");
    QTest::addColumn<QString>("station"); // null: not stored
    QTest::addColumn<QString>("values");
    const auto with = [](int index, const QVariant &value) {
        QVariantList row = kRow;
        row[index] = value;
        return row;
    };
    QTest::newRow("plain")
        << kRow << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("byte arrays, as in a line of a day file")
        << QVariantList{QStringLiteral("2024-05-01"), QByteArray("12:30:00"), 7, QByteArray("1234"),
               QByteArray("2500"), QByteArray("Основной")}
        << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1234.000, 2500.000, 0.000, 0.000");
    QTest::newRow("dashes for a height")
        << with(3, QByteArray("----")) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 0.000, 20.250, 3.000, 0.123");
    QTest::newRow("no elements") << QVariantList() << QString()
                                 << QStringLiteral(
                                        "'', '.000', '-', 0, 0.000, 0.000, 0.000, 0.000");
    QTest::newRow("date only") << QVariantList{QStringLiteral("2024-05-01")} << QString()
                               << QStringLiteral(
                                      "'2024-05-01', '.000', '-', 0, 0.000, 0.000, 0.000, 0.000");
    QTest::newRow("six elements")
        << kRow.first(6) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.000");
    QTest::newRow("one too many")
        << kRow + QVariantList{9.0} << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("device number is not a number")
        << with(2, QStringLiteral("seven")) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 0, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("device number negative and large")
        << with(2, -2147483647) << QString()
        << QStringLiteral(
               "'2024-05-01', '12:30:00.000', '-', -2147483647, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("empty variant")
        << with(4, QVariant()) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 0.000, 3.000, 0.123");
    // Single precision has 24 bits: 0.0005 is rounded up, and 16777217 cannot be represented.
    QTest::newRow("rounding up")
        << with(6, 0.0005) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.001");
    QTest::newRow("single precision")
        << with(3, 16777217.0) << QString()
        << QStringLiteral(
               "'2024-05-01', '12:30:00.000', '-', 7, 16777216.000, 20.250, 3.000, 0.123");
    QTest::newRow("negative, comma in the text")
        << with(5, QStringLiteral("-1,5")) << QString()
        << QStringLiteral("'2024-05-01', '12:30:00.000', '-', 7, 1.500, 20.250, 0.000, 0.123");
    QTest::newRow("Cyrillic station")
        << kRow << QStringLiteral("Станция №4")
        << QStringLiteral(
               "'2024-05-01', '12:30:00.000', 'Станция №4', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("quotes in the station")
        << kRow << QStringLiteral("O'Hara''s")
        << QStringLiteral(
               "'2024-05-01', '12:30:00.000', 'O'Hara''s', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("empty station")
        << kRow << QStringLiteral("")
        << QStringLiteral("'2024-05-01', '12:30:00.000', '', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("place markers in the station")
        << kRow << QStringLiteral("%4 %8 ?")
        << QStringLiteral(
               "'2024-05-01', '12:30:00.000', '%4 %8 ?', 7, 1.500, 20.250, 3.000, 0.123");
    QTest::newRow("quote in the date")
        << with(0, QStringLiteral("20'24")) << QString()
        << QStringLiteral("'20'24', '12:30:00.000', '-', 7, 1.500, 20.250, 3.000, 0.123");
}

void tst_databasesql::statement_ofRow()
{
    QFETCH(QVariantList, row);
    QFETCH(QString, station);
    QFETCH(QString, values);
    if (!station.isNull()) {
        profile::store(ork2::kServerStation, station);
    }
    databasesql uploader;
    LogCapture log;
    QCOMPARE(DatabaseSqlProbe(uploader).statement(row), kStatementStart + values + u')');
}

void tst_databasesql::station_isReadForEachStatement()
{
    databasesql uploader;
    LogCapture log;
    QVERIFY(DatabaseSqlProbe(uploader).statement(kRow).contains(QStringLiteral(", '-', ")));
    profile::store(ork2::kServerStation, QStringLiteral("A"));
    QVERIFY(DatabaseSqlProbe(uploader).statement(kRow).contains(QStringLiteral(", 'A', ")));
}

void tst_databasesql::noStoredParameters_defaultsAreUsed()
{
    databasesql uploader;
    DatabaseSqlProbe probe(uploader);
    LogCapture log;
    QVERIFY(!probe.connectToServer());
    QCOMPARE(probe.db().driverName(), QStringLiteral("QODBC3"));
    QCOMPARE(probe.db().connectionName(), QLatin1String(QSqlDatabase::defaultConnection));
    QCOMPARE(probe.db().hostName(), QStringLiteral(ORK2_DEFAULT_DB_HOST));
    QCOMPARE(probe.db().port(), 1433);
    QCOMPARE(probe.db().userName(), QStringLiteral("uvi"));
    QCOMPARE(probe.db().password(), QString());
    QCOMPARE(probe.db().databaseName(),
        QStringLiteral("DRIVER={ODBC Driver 17 for SQL Server}; DATABASE=UVIndex; "
                       "SERVER=" ORK2_DEFAULT_DB_HOST));
    QCOMPARE(log.lines().first(), presentDrivers());
    QVERIFY(log.lines().contains(QStringLiteral("Connection failed")));
    probe.closeConnection();
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
}

void tst_databasesql::storedParameters_areReadForEachConnection()
{
    databasesql uploader;
    DatabaseSqlProbe probe(uploader);
    LogCapture log;
    QVERIFY(!probe.connectToServer());
    probe.closeConnection();
    profile::store(ork2::kServerHost, QStringLiteral("127.0.0.9"));
    profile::store(ork2::kServerPort, QStringLiteral("1444"));
    profile::store(ork2::kServerUser, QStringLiteral("метео"));
    profile::store(ork2::kServerPassword, QStringLiteral("пароль"));
    QVERIFY(!probe.connectToServer());
    QCOMPARE(probe.db().hostName(), QStringLiteral("127.0.0.9"));
    QCOMPARE(probe.db().port(), 1444);
    QCOMPARE(probe.db().userName(), QStringLiteral("метео"));
    QCOMPARE(probe.db().password(), QStringLiteral("пароль"));
    QVERIFY(probe.db().databaseName().endsWith(QStringLiteral("; SERVER=127.0.0.9")));
    probe.closeConnection();
    profile::store(ork2::kServerPort, QStringLiteral("many"));
    QVERIFY(!probe.connectToServer());
    QCOMPARE(probe.db().port(), 0);
    probe.closeConnection();
}

void tst_databasesql::serverSettings_haveNoEffect()
{
    databasesql uploader;
    QSignalSpy texts(&uploader, &databasesql::logSQLData);
    QSignalSpy end(&uploader, &databasesql::finished);
    LogCapture log;
    uploader.ServerSettings(
        QStringLiteral("10.0.0.1"), 99, QStringLiteral("a"), QStringLiteral("b"));
    const QStringList logged = log.lines().filter(QStringLiteral("It's work!!! The num is"));
    QCOMPARE(logged,
        QStringList({QStringLiteral("It's work!!! The num is \"10.0.0.1\""),
            QStringLiteral("It's work!!! The num is 99"),
            QStringLiteral("It's work!!! The num is \"a\""),
            QStringLiteral("It's work!!! The num is \"b\"")}));
    DatabaseSqlProbe probe(uploader);
    QCOMPARE(probe.host(), QStringLiteral(ORK2_DEFAULT_DB_HOST));
    QCOMPARE(probe.db().userName(), QStringLiteral("uvi"));
    QVERIFY(texts.isEmpty());
    QVERIFY(end.isEmpty());
    probe.closeConnection();
}

void tst_databasesql::serverSettings_emptyArguments_areNotLogged()
{
    databasesql uploader;
    LogCapture log;
    uploader.ServerSettings(QString(), 0, QString(), QString());
    QCOMPARE(log.lines().filter(QStringLiteral("It's work")), QStringList());
    QVERIFY(log.lines().contains(QStringLiteral("Connection failed")));
    DatabaseSqlProbe(uploader).closeConnection();
}

void tst_databasesql::makeSqlStr_replacesTheRow()
{
    databasesql uploader;
    uploader.setRowValues(kRow);
    QCOMPARE(DatabaseSqlProbe(uploader).rowValues(), kRow);
    uploader.makeSqlStr({1});
    QCOMPARE(DatabaseSqlProbe(uploader).rowValues(), QVariantList{1});
}

void tst_databasesql::statementWithoutConnection_fails()
{
    databasesql uploader;
    QSignalSpy texts(&uploader, &databasesql::logSQLData);
    LogCapture log;
    QVERIFY(!uploader.inserIntoTable(kRow));
    QCOMPARE(texts, (QList<QVariantList>{{QStringLiteral("SQL data failed!")}}));
    QVERIFY(log.lines().contains(QStringLiteral("error insert into [UVIndex].[dbo].[UVI]")));
}

void tst_databasesql::unknownDriver_failsToConnect()
{
    databasesql uploader;
    QStringList order;
    connect(&uploader, &databasesql::logSQLData, this, [&order](const QString &text) {
        // The connection is already closed.
        order << text + QSqlDatabase::connectionNames().join(u' ');
    });
    connect(
        &uploader, &databasesql::finished, this, [&order] { order << QStringLiteral("finished"); });
    LogCapture log;
    uploader.serverSend();
    QCOMPARE(
        order, QStringList({QStringLiteral("SQL connection failed!"), QStringLiteral("finished")}));
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    QStringList ownLines = log.lines();
    for (const QString &qtWarning : log.warnings()) {
        ownLines.removeAll(qtWarning);
    }
    QCOMPARE(ownLines,
        QStringList({presentDrivers(), QStringLiteral("Connection failed"),
            QStringLiteral("BeforeDelete \"qt_sql_default_connection\""),
            QStringLiteral("AfterDelete QList()"), QStringLiteral("SQL closed")}));
}

void tst_databasesql::process_pausesItsThread_thenFinishes()
{
    databasesql uploader;
    QSignalSpy end(&uploader, &databasesql::finished);
    LogCapture log;
    QElapsedTimer clock;
    clock.start();
    uploader.process();
    QVERIFY(clock.elapsed() >= 5000 && clock.elapsed() < 6000);
    QCOMPARE(end.count(), 1);
    QCOMPARE(log.lines(),
        QStringList(
            {QStringLiteral("Go to sleep sqlThread..."), QStringLiteral("Wake up sqlThread!!!")}));
}

QTEST_GUILESS_MAIN(tst_databasesql)
#include "tst_databasesql.moc"
