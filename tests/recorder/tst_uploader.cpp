// SPDX-License-Identifier: GPL-3.0-or-later
// Rows that wait on the disk for the database server, and their upload through a real ODBC driver.
#include "uploader.h"

#include "tdsresponder.h"
#include "testdriver.h"
#include "timeout.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <sys/wait.h>
#include <unistd.h>

using ork2::Uploader;
using ork2::UploadStore;

namespace {

constexpr int kDayRows = 1440;

// The row of a minute of the day.
QVariantList row(int minute)
{
    const QTime time = QTime(0, 0).addSecs(60 * minute);
    return {QStringLiteral("2024-05-01"), time.toString(u"hh:mm:ss").toUtf8(), 7,
        QByteArray::number(1000 + minute), QByteArrayLiteral("----"),
        QStringLiteral("Основной").toUtf8()};
}

QByteArray stored(int minute)
{
    const QTime time = QTime(0, 0).addSecs(60 * minute);
    return R"(["2024-05-01", ")" + time.toString(u"hh:mm:ss").toLatin1() + R"(.000", "Пост", 7, )"
        + QByteArray::number(1000 + minute) + ".0, 0.0, 0.0, 0.0]";
}

QByteArrayList stored(int first, int end)
{
    QByteArrayList rows;
    for (int minute = first; minute < end; ++minute) {
        rows << stored(minute);
    }
    return rows;
}

} // namespace

class tst_uploader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void store_returnsRowsInOrder_andRemembersThem();
    void store_killedProcess_keepsItsRows();
    void store_damagedFile_isMovedAside();
    void store_folderMissing_isReported();
    void store_unreadable_isReported();
    void row_isSentAtOnce();
    void serverAway_rowsArriveOnce_inOrder();
    void serverAwayForADay_allRowsArriveOnce();
    void refusedRow_staysFirst();
    void restart_sendsTheWaitingRows();
    void brokenConnection_losesNoRow();
    void lostConfirmation_repeatsOneRowAtMost();
    void ending_doesNotWaitForTheServer();
    void ending_leavesTheRestToTheNext();

private:
    void serve(const QString &mode = QStringLiteral("ok"));
    void makeUploader();
    [[nodiscard]] QString path() const { return m_folder->filePath(QStringLiteral("rows.sqlite")); }
    [[nodiscard]] qint64 waiting() const;

    QTemporaryDir m_drivers;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<TdsResponder> m_server;
    std::unique_ptr<Uploader> m_uploader;
    std::unique_ptr<QSignalSpy> m_stopped;
    std::unique_ptr<QSignalSpy> m_resumed;
};

void tst_uploader::initTestCase()
{
    QVERIFY2(ork2::useTestDriver(m_drivers.path()), "The package tdsodbc is missing");
}

void tst_uploader::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

void tst_uploader::cleanup()
{
    m_stopped.reset();
    m_resumed.reset();
    m_uploader.reset();
    m_server.reset();
}

void tst_uploader::serve(const QString &mode)
{
    m_server = std::make_unique<TdsResponder>(mode);
}

void tst_uploader::makeUploader()
{
    const int port = m_server->port().toInt();
    const QString host = QStringLiteral("127.0.0.1,%1").arg(port);
    m_uploader = std::make_unique<Uploader>(
        ork2::DatabaseServer{host, port, QStringLiteral("uvi"), {}, QStringLiteral("Пост")},
        path());
    m_stopped = std::make_unique<QSignalSpy>(m_uploader.get(), &Uploader::stopped);
    m_resumed = std::make_unique<QSignalSpy>(m_uploader.get(), &Uploader::resumed);
    QVERIFY2(m_uploader->openStore(), qPrintable(m_uploader->error()));
    m_uploader->startSending();
}

qint64 tst_uploader::waiting() const
{
    UploadStore store(path());
    return store.open() ? store.count() : -1;
}

void tst_uploader::store_returnsRowsInOrder_andRemembersThem()
{
    {
        UploadStore store(path());
        QVERIFY2(store.open(), qPrintable(store.error()));
        for (int minute = 0; minute < 3; ++minute) {
            QVERIFY2(store.append(row(minute)), qPrintable(store.error()));
        }
        QVERIFY(store.removeUpTo(store.firstAfter(0)->id));
    }
    UploadStore store(path());
    QVERIFY(store.open());
    QCOMPARE(store.count(), 2);
    const auto first = store.firstAfter(0);
    QVERIFY(first);
    QCOMPARE(first->values.size(), row(1).size());
    for (qsizetype column = 0; column < row(1).size(); ++column) {
        QCOMPARE(first->values.at(column).toString(), row(1).at(column).toString());
    }
    QCOMPARE(store.firstAfter(first->id)->values.at(1).toString(), QStringLiteral("00:02:00"));
    // An id is never used again, even after its row was the last one and was removed.
    const qint64 last = store.firstAfter(first->id)->id;
    QVERIFY(store.removeUpTo(last));
    QVERIFY(!store.firstAfter(0));
    QVERIFY(store.append(row(3)));
    QCOMPARE(store.firstAfter(0)->id, last + 1);
}

void tst_uploader::store_killedProcess_keepsItsRows()
{
    const pid_t child = ::fork();
    QVERIFY(child >= 0);
    if (child == 0) {
        UploadStore store(path());
        if (store.open()) {
            for (int minute = 0; minute < 5; ++minute) {
                (void)store.append(row(minute));
            }
        }
        ::kill(::getpid(), SIGKILL);
    }
    int status = 0;
    QCOMPARE(::waitpid(child, &status, 0), child);
    QVERIFY(WIFSIGNALED(status));
    QCOMPARE(waiting(), 5);
}

void tst_uploader::store_damagedFile_isMovedAside()
{
    QFile file(path());
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(10000, 'x'));
    file.close();
    UploadStore store(path());
    QVERIFY2(store.open(), qPrintable(store.error()));
    QVERIFY(QFile::exists(store.movedAside()));
    QVERIFY(store.append(row(0)));
    QCOMPARE(store.count(), 1);
}

void tst_uploader::store_folderMissing_isReported()
{
    UploadStore store(m_folder->filePath(QStringLiteral("absent/rows")));
    QVERIFY(!store.open());
    QVERIFY(!store.error().isEmpty());
    QCOMPARE(store.movedAside(), QString());
}

void tst_uploader::store_unreadable_isReported()
{
    UploadStore store(path());
    QVERIFY(store.open());
    QVERIFY(!store.firstAfter(0));
    QCOMPARE(store.error(), QString());
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), path());
        other.setDatabaseName(path());
        QVERIFY(other.open());
        QSqlQuery(other).exec(QStringLiteral("DROP TABLE waiting"));
    }
    QSqlDatabase::removeDatabase(path());
    QVERIFY(!store.firstAfter(0));
    QVERIFY(!store.error().isEmpty());
}

void tst_uploader::row_isSentAtOnce()
{
    serve();
    makeUploader();
    QVERIFY(m_uploader->add(row(0)));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->rows(), stored(0, 1), kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(waiting(), 0, kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_server->count("login"), 1, kTimeoutMs); // one connection for all rows
    QCOMPARE(m_stopped->count(), 0);
    QCOMPARE(m_resumed->count(), 0);
}

void tst_uploader::serverAway_rowsArriveOnce_inOrder()
{
    serve(QStringLiteral("login-wrong"));
    makeUploader();
    for (int minute = 0; minute < 10; ++minute) {
        QVERIFY(m_uploader->add(row(minute)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_stopped->count(), 1, kTimeoutMs);
    QVERIFY(!m_stopped->first().first().toString().isEmpty());
    QCOMPARE(waiting(), 10);
    m_server->setMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_resumed->count(), 1, kTimeoutMs);
    QCOMPARE(m_resumed->first().first().toLongLong(), 10);
    QCOMPARE(m_server->rows(), stored(0, 10));
    QCOMPARE(waiting(), 0);
    QCOMPARE(m_stopped->count(), 1);
}

void tst_uploader::serverAwayForADay_allRowsArriveOnce()
{
    serve(QStringLiteral("login-wrong"));
    makeUploader();
    QElapsedTimer clock;
    clock.start();
    for (int minute = 0; minute < kDayRows; ++minute) {
        QVERIFY(m_uploader->add(row(minute)));
    }
    const double storeSeconds = static_cast<double>(clock.elapsed()) / 1000.0;
    m_server->setMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("inserted") > 0, true, kTimeoutMs);
    clock.restart();
    QTRY_COMPARE_WITH_TIMEOUT(m_resumed->count(), 1, 10 * kTimeoutMs);
    const double sendSeconds = static_cast<double>(clock.elapsed()) / 1000.0;
    QCOMPARE(m_server->rows(), stored(0, kDayRows));
    QCOMPARE(waiting(), 0);
    qInfo("%d rows: %.0f a second stored, %.0f a second sent", kDayRows, kDayRows / storeSeconds,
        kDayRows / sendSeconds);
}

void tst_uploader::refusedRow_staysFirst()
{
    serve(QStringLiteral("error-statement"));
    makeUploader();
    QVERIFY(m_uploader->add(row(0)));
    QVERIFY(m_uploader->add(row(1)));
    QTRY_COMPARE_WITH_TIMEOUT(m_stopped->count(), 1, kTimeoutMs);
    QVERIFY(m_stopped->first().first().toString().contains(QLatin1String("refused")));
    QCOMPARE(waiting(), 2);
    m_server->setMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_resumed->count(), 1, kTimeoutMs);
    QCOMPARE(m_server->rows(), stored(0, 2));
}

void tst_uploader::restart_sendsTheWaitingRows()
{
    serve(QStringLiteral("login-wrong"));
    makeUploader();
    QVERIFY(m_uploader->add(row(0)));
    QTRY_COMPARE_WITH_TIMEOUT(m_stopped->count(), 1, kTimeoutMs);
    m_uploader.reset();
    m_server->setMode(QStringLiteral("ok"));
    makeUploader();
    QTRY_COMPARE_WITH_TIMEOUT(m_server->rows(), stored(0, 1), kTimeoutMs);
}

void tst_uploader::brokenConnection_losesNoRow()
{
    serve(QStringLiteral("die-statement"));
    makeUploader();
    for (int minute = 0; minute < 3; ++minute) {
        QVERIFY(m_uploader->add(row(minute)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_stopped->count(), 1, kTimeoutMs);
    QCOMPARE(waiting(), 3);
    m_server->setMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_resumed->count(), 1, kTimeoutMs);
    QCOMPARE(m_server->rows(), stored(0, 3));
}

// Only the server knows that the row was inserted: it is sent again, and no other.
void tst_uploader::lostConfirmation_repeatsOneRowAtMost()
{
    serve(QStringLiteral("die-confirmation"));
    makeUploader();
    for (int minute = 0; minute < 3; ++minute) {
        QVERIFY(m_uploader->add(row(minute)));
    }
    QTRY_COMPARE_WITH_TIMEOUT(m_stopped->count(), 1, kTimeoutMs);
    QCOMPARE(m_server->rows(), stored(0, 1));
    m_server->setMode(QStringLiteral("ok"));
    QTRY_COMPARE_WITH_TIMEOUT(m_resumed->count(), 1, kTimeoutMs);
    QCOMPARE(m_server->rows(), stored(0, 1) + stored(0, 3));
}

void tst_uploader::ending_doesNotWaitForTheServer()
{
    serve(QStringLiteral("silent-statement"));
    makeUploader();
    QSignalSpy ended(m_uploader.get(), &Uploader::ended);
    QVERIFY(m_uploader->add(row(0)));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("login"), 1, kTimeoutMs);
    QElapsedTimer clock;
    clock.start();
    m_uploader->endSoon();
    QVERIFY2(clock.elapsed() < 1000, qPrintable(QString::number(clock.elapsed())));
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kTimeoutMs);
    qInfo("ended after %lld ms", clock.elapsed());
    QCOMPARE(waiting(), 1);
}

void tst_uploader::ending_leavesTheRestToTheNext()
{
    {
        UploadStore store(path());
        QVERIFY(store.open());
        for (int minute = 0; minute < kDayRows; ++minute) {
            QVERIFY(store.append(row(minute)));
        }
    }
    serve();
    makeUploader();
    QSignalSpy ended(m_uploader.get(), &Uploader::ended);
    QTRY_VERIFY_WITH_TIMEOUT(m_server->count("inserted") > 0, kTimeoutMs);
    m_uploader->endSoon();
    QTRY_COMPARE_WITH_TIMEOUT(ended.count(), 1, kTimeoutMs);
    QVERIFY(waiting() > 0);
    makeUploader();
    QTRY_COMPARE_WITH_TIMEOUT(waiting(), 0, kTimeoutMs);
    QCOMPARE(m_server->rows(), stored(0, kDayRows));
}

QTEST_GUILESS_MAIN(tst_uploader)
#include "tst_uploader.moc"
