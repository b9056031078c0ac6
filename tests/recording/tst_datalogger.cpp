// SPDX-License-Identifier: GPL-3.0-or-later
#include "datalogger.h"

#include "dataloggerprobe.h"
#include "logcapture.h"
#include "metamembers.h"
#include "profile.h"
#include "sharedvalues.h"

#include <QCoreApplication>
#include <QMetaMethod>
#include <QMutex>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <atomic>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#endif

namespace {

const QString kDate = QStringLiteral("2026/11/15");
const QString kTime = QStringLiteral("12:34:00");

QByteArray header(int unit)
{
    return "Номер прибора: " + QByteArray::number(unit)
        + "\r\nВремя:\tПервый слой облаков:\tВторой слой облаков:\tКанал:\r\n";
}

QByteArray contents(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll()
                                          : QByteArrayLiteral("(cannot be opened)");
}

} // namespace

class tst_datalogger : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void metaObject_members_areInDeclaredOrder();
    void firstReading_ofDay_createsFolderHeaderAndRecord();
    void severalReadings_areAppended_byteForByte();
    void noValue_bothLayers_areDashes();
    void channel_names_data();
    void channel_names();
    void path_fromStore_decidesTheFolder_data();
    void path_fromStore_decidesTheFolder();
    void dateForm_namesTheFile_data();
    void dateForm_namesTheFile();
    void silentInstrument_writesNothing_data();
    void silentInstrument_writesNothing();
    void silentInstrument_newDay_leavesHeaderOnly();
    void measurementStart_firstReading_isAwaited();
    void pipe_asDayFile_isRefused();
    void unitZero_createsNoFolder();
    void unitZero_existingFolder_getsRecordWithoutHeader();
    void unitNumber_notANumber_isZero();
    void unitNumber_isReadOnce();
    void midnight_startsNewFile();
    void unwritableFolder_isReported_andRetried();
    void folderRemoved_whileRunning_isCreatedAgain();
    void emptyFile_getsHeader();
    void line_written_isFlushedToDisk();
    void line_flushFails_isReported();
    void fullDisk_leavesCompleteLines();
    void fullDisk_newDay_leavesNoFile();
    void headerTemplate_isChecked();
    void dbLog_isForwarded();
    void uploadRow_hasDateTimeUnitAndFields();
    void uploadRow_oddLines_data();
    void uploadRow_oddLines();
    void uploadFlag_notSet_startsNoUpload();
    void sensors_nothingReceived_haveInitialValues();
    void sensors_eachSlot_setsOnlyItsValues_data();
    void sensors_eachSlot_setsOnlyItsValues();
    void sensors_unknownAddresses_areIgnored();
    void sensors_areNotWritten();

private:
    [[nodiscard]] QString dayFile(
        int unit = 17, const QString &date = QStringLiteral("2026.11.15")) const;

    QScopedPointer<QTemporaryDir> m_base;
};

void tst_datalogger::init()
{
    profile::clear();
    profile::store(ork2::kUnitNumber, QStringLiteral("17"));
    m_base.reset(new QTemporaryDir);
    QVERIFY(m_base->isValid());
    profile::store(ork2::kNamePath, m_base->path());
    noReplyCounter.storeRelaxed(0);
}

QString tst_datalogger::dayFile(int unit, const QString &date) const
{
    return m_base->filePath(QStringLiteral("Data/ORK-2 N%1/%2.txt").arg(unit).arg(date));
}

void tst_datalogger::metaObject_members_areInDeclaredOrder()
{
    const QMetaObject &meta = datalogger::staticMetaObject;
    const QByteArrayList methods = methodSignatures(meta);
    QCOMPARE(methods,
        QByteArrayList({"debugLog(QString)", "sendSqlStr(QVariantList)", "dataLedStatus(bool)",
            "DataWindSpeedRecieved(int,double,double,double)",
            "DataDirSpeedRecieved(int,double,double,double)",
            "DataExtSpeedRecieved(int,double,double,double)", "DataCloudRecieved(QString,QString)",
            "DataCloudChanel(QString)", "DataTempRecieved(int,double)",
            "DateTimeRecieve(QString,QString)", "sqlChkBox(bool)", "SendStringToFile()",
            "dbLog(QString)", "arrayToQVList(QByteArray)"}));
}

void tst_datalogger::firstReading_ofDay_createsFolderHeaderAndRecord()
{
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DataCloudRecieved(QStringLiteral("1234"), QStringLiteral("2500"));
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:34:00\t1234\t2500\tОсновной");
    QCOMPARE(lamp, (QList<QVariantList>{{true}}));
    QVERIFY(log.lines().contains(QStringLiteral("New file was create with header")));
}

void tst_datalogger::severalReadings_areAppended_byteForByte()
{
    datalogger writer;
    LogCapture log;
    writer.DataCloudRecieved(QStringLiteral("0120"), QStringLiteral("2500"));
    writer.DateTimeRecieve(kDate, kTime);
    writer.DataCloudChanel(QStringLiteral("1"));
    writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    datalogger restarted; // after a restart, the program continues in the same file
    restarted.DataCloudRecieved(QStringLiteral("7777"), QStringLiteral("7777"));
    restarted.DateTimeRecieve(kDate, QStringLiteral("12:36:00"));
    QCOMPARE(contents(dayFile()),
        header(17)
            + "\r\n12:34:00\t0120\t2500\tОсновной"
              "\r\n12:35:00\t0120\t2500\tРезерв"
              "\r\n12:36:00\t7777\t7777\tОсновной");
}

void tst_datalogger::noValue_bothLayers_areDashes()
{
    datalogger writer;
    LogCapture log;
    writer.DataCloudRecieved(QStringLiteral("5000"), QStringLiteral("5000"));
    writer.DateTimeRecieve(kDate, kTime);
    writer.DataCloudRecieved(QStringLiteral("05000"), QStringLiteral("5000"));
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()),
        header(17) + "\r\n12:34:00\t----\t----\tОсновной\r\n12:34:00\t05000\t----\tОсновной");
}

void tst_datalogger::channel_names_data()
{
    QTest::addColumn<QString>("channel");
    QTest::addColumn<QByteArray>("name");
    QTest::newRow("main") << QStringLiteral("0") << QByteArray("Основной");
    QTest::newRow("reserve") << QStringLiteral("1") << QByteArray("Резерв");
    QTest::newRow("unknown") << QStringLiteral("7") << QByteArray("Резерв");
    QTest::newRow("none") << QString() << QByteArray("Резерв");
}

void tst_datalogger::channel_names()
{
    QFETCH(QString, channel);
    QFETCH(QByteArray, name);
    datalogger writer;
    LogCapture log;
    writer.DataCloudChanel(channel);
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()).split('\t').last(), name);
}

void tst_datalogger::path_fromStore_decidesTheFolder_data()
{
    QTest::addColumn<QString>("namePath"); // %1: a new folder; null: not stored
    QTest::addColumn<QString>("folder");   // empty: the program folder
    QTest::newRow("not stored") << QString() << QString();
    QTest::newRow("mark") << QStringLiteral("!") << QString();
    QTest::newRow("text after the mark") << QStringLiteral("!/tmp") << QString();
    QTest::newRow("a folder") << QStringLiteral("%1/a") << QStringLiteral("%1/a");
    QTest::newRow("Cyrillic and spaces")
        << QStringLiteral("%1/Данные метео станции") << QStringLiteral("%1/Данные метео станции");
    QTest::newRow("very long") << QStringLiteral("%1/") + QString(120, u'x') + u'/'
            + QString(120,
                u'y') << QStringLiteral("%1/") + QString(120, u'x') + u'/' + QString(120, u'y');
}

void tst_datalogger::path_fromStore_decidesTheFolder()
{
    QFETCH(QString, namePath);
    QFETCH(QString, folder);
    profile::clear();
    profile::store(ork2::kUnitNumber, QStringLiteral("4711"));
    if (!namePath.isNull()) {
        profile::store(ork2::kNamePath, namePath.replace(QLatin1String("%1"), m_base->path()));
    }
    const QString base = folder.isEmpty() ? QCoreApplication::applicationDirPath()
                                          : folder.replace(QLatin1String("%1"), m_base->path());
    const QString path = base + QStringLiteral("/Data/ORK-2 N4711/2026.11.15.txt");
    QFile::remove(path);
    datalogger writer;
    LogCapture log;
    writer.DataCloudRecieved(QStringLiteral("1"), QStringLiteral("2"));
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(path), header(4711) + "\r\n12:34:00\t1\t2\tОсновной");
    QFile::remove(path);
}

void tst_datalogger::dateForm_namesTheFile_data()
{
    QTest::addColumn<int>("form");
    QTest::addColumn<QString>("name");
    QTest::newRow("dots") << 0 << QStringLiteral("2026.11.15");
    QTest::newRow("plain") << 1 << QStringLiteral("20261115");
    QTest::newRow("last six") << 2 << QStringLiteral("261115");
}

void tst_datalogger::dateForm_namesTheFile()
{
    QFETCH(const int, form);
    QFETCH(const QString, name);
    datalogger writer;
    DataloggerProbe::setDateForm(writer, form);
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(QFile::exists(dayFile(17, name)));
}

void tst_datalogger::silentInstrument_writesNothing_data()
{
    QTest::addColumn<int>("silentSeconds");
    QTest::addColumn<bool>("written");
    QTest::newRow("just received") << 0 << true;
    QTest::newRow("5 seconds") << 5 << true;
    QTest::newRow("6 seconds") << 6 << false;
    QTest::newRow("lost") << 31 << false;
}

void tst_datalogger::silentInstrument_writesNothing()
{
    QFETCH(int, silentSeconds);
    QFETCH(bool, written);
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    const QByteArray before = contents(dayFile());
    noReplyCounter.storeRelaxed(silentSeconds);
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(lamp, (QList<QVariantList>{{written}}));
    QCOMPARE(contents(dayFile()) != before, written);
}

void tst_datalogger::silentInstrument_newDay_leavesHeaderOnly()
{
    noReplyCounter.storeRelaxed(6);
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()), header(17));
}

void tst_datalogger::measurementStart_firstReading_isAwaited()
{
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DataCloudRecieved(QStringLiteral("1234"), QStringLiteral("2500"));
    writer.awaitReading();
    writer.sqlChkBox(true);
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()), header(17));
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));
    QCOMPARE(DataloggerProbe(writer).uploadThread(), nullptr);
    writer.sqlChkBox(false);
    writer.DataCloudRecieved(QStringLiteral("0300"), QStringLiteral("0400"));
    writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:35:00\t0300\t0400\tОсновной");
    QCOMPARE(lamp.constLast(), QVariantList{true});
}

void tst_datalogger::pipe_asDayFile_isRefused()
{
#ifndef Q_OS_UNIX
    QSKIP("Named pipes are files on Unix only");
#else
    QVERIFY(QDir().mkpath(QFileInfo(dayFile()).path()));
    // There is no reader, so opening the pipe would block until the test times out.
    QCOMPARE(mkfifo(dayFile().toLocal8Bit().constData(), 0600), 0);
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));
    QVERIFY(log.lines().contains(QStringLiteral("File wasn't open")));
#endif
}

void tst_datalogger::unitZero_createsNoFolder()
{
    profile::store(ork2::kUnitNumber, QStringLiteral("0"));
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(!QFileInfo::exists(m_base->filePath(QStringLiteral("Data"))));
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));
    QVERIFY(log.lines().contains(QStringLiteral("File wasn't open")));
}

void tst_datalogger::unitZero_existingFolder_getsRecordWithoutHeader()
{
    profile::store(ork2::kUnitNumber, QStringLiteral("0"));
    QVERIFY(QDir().mkpath(m_base->filePath(QStringLiteral("Data/ORK-2 N0"))));
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile(0)), QByteArray("\r\n12:34:00\t\t\tОсновной"));
}

void tst_datalogger::unitNumber_notANumber_isZero()
{
    profile::store(ork2::kUnitNumber, QStringLiteral("семь"));
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(lamp, (QList<QVariantList>{{false}}));
}

void tst_datalogger::unitNumber_isReadOnce()
{
    datalogger writer;
    profile::store(ork2::kUnitNumber, QStringLiteral("18"));
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(QFileInfo::exists(dayFile(17)));
    QVERIFY(!QFileInfo::exists(dayFile(18)));
}

void tst_datalogger::midnight_startsNewFile()
{
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(QStringLiteral("2028/02/29"), QStringLiteral("23:59:00"));
    writer.DateTimeRecieve(QStringLiteral("2028/03/01"), QStringLiteral("00:00:00"));
    QCOMPARE(contents(dayFile(17, QStringLiteral("2028.02.29"))),
        header(17) + "\r\n23:59:00\t\t\tОсновной");
    QCOMPARE(contents(dayFile(17, QStringLiteral("2028.03.01"))),
        header(17) + "\r\n00:00:00\t\t\tОсновной");
}

void tst_datalogger::unwritableFolder_isReported_andRetried()
{
    // A file in place of the folder prevents writing even for root.
    QFile obstacle(m_base->filePath(QStringLiteral("Data")));
    QVERIFY(obstacle.open(QIODevice::WriteOnly));
    obstacle.close();
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(lamp.takeFirst(), QVariantList{false});
    QVERIFY(obstacle.remove());
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(lamp.takeFirst(), QVariantList{true});
}

void tst_datalogger::folderRemoved_whileRunning_isCreatedAgain()
{
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(QDir(m_base->filePath(QStringLiteral("Data"))).removeRecursively());
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    QCOMPARE(lamp, (QList<QVariantList>{{true}}));
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:35:00\t\t\tОсновной");
}

#ifdef Q_OS_LINUX
namespace {

QMutex g_syncLock;
QString g_synced; // the file that was last synced
std::atomic<bool> g_syncFails = false;

} // namespace

// Replaces the function of the system.
extern "C" int fsync(int descriptor)
{
    const QMutexLocker lock(&g_syncLock);
    g_synced = QFileInfo(QStringLiteral("/proc/self/fd/%1").arg(descriptor)).symLinkTarget();
    errno = EIO;
    return g_syncFails ? -1 : 0;
}
#endif

void tst_datalogger::line_written_isFlushedToDisk()
{
#ifndef Q_OS_LINUX
    QSKIP("The synced file can be determined on Linux only");
#else
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    const auto synced = [this] {
        const QMutexLocker lock(&g_syncLock);
        return g_synced == QFileInfo(dayFile()).canonicalFilePath();
    };
    QTRY_VERIFY(synced());
#endif
}

void tst_datalogger::line_flushFails_isReported()
{
#ifndef Q_OS_LINUX
    QSKIP("Disk errors can be simulated on Linux only");
#else
    datalogger writer;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    LogCapture log;
    g_syncFails = true;
    writer.DateTimeRecieve(kDate, kTime);
    QTRY_COMPARE(lamp, (QList<QVariantList>{{true}, {false}}));
    g_syncFails = false;
    QVERIFY(log.lines().contains(
        QStringLiteral("File wasn't written:  \"%1\"").arg(qt_error_string(EIO))));
#endif
}

void tst_datalogger::emptyFile_getsHeader()
{
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(QFile::resize(dayFile(), 0));
    writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:35:00\t\t\tОсновной");
}

#ifdef Q_OS_UNIX
namespace {

// Limits the file size during its lifetime, which has the same effect as a full disk.
class FullDisk
{
public:
    explicit FullDisk(qint64 bytes)
    {
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        rlimit limit = m_before;
        limit.rlim_cur = static_cast<rlim_t>(bytes);
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FullDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }
    Q_DISABLE_COPY_MOVE(FullDisk)

private:
    rlimit m_before{};
};

} // namespace
#endif

void tst_datalogger::fullDisk_leavesCompleteLines()
{
#ifndef Q_OS_UNIX
    QSKIP("A full disk can be simulated on Unix only");
#else
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    const QByteArray before = contents(dayFile());
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    {
        const FullDisk disk(before.size() + 7);
        writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    }
    QCOMPARE(lamp.takeFirst(), QVariantList{false});
    QCOMPARE(contents(dayFile()), before);
    writer.DateTimeRecieve(kDate, QStringLiteral("12:36:00"));
    QCOMPARE(lamp.takeFirst(), QVariantList{true});
    QCOMPARE(contents(dayFile()), before + "\r\n12:36:00\t\t\tОсновной");
#endif
}

void tst_datalogger::fullDisk_newDay_leavesNoFile()
{
#ifndef Q_OS_UNIX
    QSKIP("A full disk can be simulated on Unix only");
#else
    datalogger writer;
    LogCapture log;
    QSignalSpy lamp(&writer, &datalogger::dataLedStatus);
    {
        const FullDisk disk(20);
        writer.DateTimeRecieve(kDate, kTime);
    }
    QCOMPARE(lamp.takeFirst(), QVariantList{false});
    QVERIFY(!QFileInfo::exists(dayFile()));
    writer.DateTimeRecieve(kDate, QStringLiteral("12:35:00"));
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:35:00\t\t\tОсновной");
#endif
}

void tst_datalogger::headerTemplate_isChecked()
{
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/Data");
    QVERIFY(QDir().mkpath(folder));
    const QString path = folder + QStringLiteral("/Header.txt");
    QFile::remove(path); // left by an aborted run
    datalogger writer;
    {
        LogCapture log;
        writer.DateTimeRecieve(kDate, kTime);
        QCOMPARE(log.lines().first(), QStringLiteral("File not existed"));
    }
    QVERIFY(QDir().mkdir(path)); // exists, but cannot be opened
    {
        LogCapture log;
        writer.DateTimeRecieve(kDate, kTime);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("File wasn't open")});
    }
    QVERIFY(QDir().rmdir(path));
#ifdef Q_OS_UNIX
    // There is no writer, so opening the pipe would block until the test times out.
    QCOMPARE(mkfifo(path.toLocal8Bit().constData(), 0600), 0);
    {
        LogCapture log;
        writer.DateTimeRecieve(kDate, kTime);
        QCOMPARE(log.lines(), QStringList{QStringLiteral("File wasn't open")});
    }
    QVERIFY(QFile::remove(path));
#endif
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    {
        LogCapture log;
        writer.DateTimeRecieve(kDate, kTime);
        QCOMPARE(log.lines(), QStringList());
    }
    file.remove();
}

void tst_datalogger::dbLog_isForwarded()
{
    datalogger writer;
    QSignalSpy log(&writer, &datalogger::debugLog);
    writer.dbLog(QStringLiteral("SQL bind"));
    QCOMPARE(log, (QList<QVariantList>{{QStringLiteral("SQL bind")}}));
}

void tst_datalogger::uploadRow_hasDateTimeUnitAndFields()
{
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    const QVariantList expected{QStringLiteral("2026-11-15"), QByteArray("12:34:00"), 17,
        QByteArray("1234"), QByteArray("----"), QByteArray("Резерв")};
    QCOMPARE(writer.arrayToQVList("\r\n12:34:00\t1234\t----\tРезерв"), expected);
    // The stored date still contains slashes, so the next line is written to the same file.
    writer.SendStringToFile();
    QCOMPARE(contents(dayFile()).count("\r\n12:34:00"), 2);
}

void tst_datalogger::uploadRow_oddLines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QVariantList>("row");
    const QString date = QStringLiteral("2026-11-15");
    QTest::newRow("nothing") << QByteArray() << QVariantList{date, QByteArray(), 17};
    QTest::newRow("line break only") << QByteArray("\r\n") << QVariantList{date, QByteArray(), 17};
    QTest::newRow("no leading line break") << QByteArray(
        "12:34:00\t1") << QVariantList{date, QByteArray("12:34:00"), 17, QByteArray("1")};
    QTest::newRow("only the first line break is removed")
        << QByteArray("\r\n\r\na") << QVariantList{date, QByteArray("\r\na"), 17};
    QTest::newRow("carriage return alone is kept")
        << QByteArray("\ra") << QVariantList{date, QByteArray("\ra"), 17};
    QTest::newRow("empty fields") << QByteArray(
        "\r\n\t\t") << QVariantList{date, QByteArray(), 17, QByteArray(), QByteArray()};
    QTest::newRow("zero byte and invalid UTF-8") << QByteArray(
        "a\0b\t\xff", 5) << QVariantList{date, QByteArray("a\0b", 3), 17, QByteArray("\xff")};
}

void tst_datalogger::uploadRow_oddLines()
{
    QFETCH(QByteArray, line);
    QFETCH(QVariantList, row);
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(writer.arrayToQVList(line), row);
}

void tst_datalogger::uploadFlag_notSet_startsNoUpload()
{
    datalogger writer;
    LogCapture log;
    writer.DateTimeRecieve(kDate, kTime);
    QVERIFY(!DataloggerProbe(writer).uploads());
    QCOMPARE(DataloggerProbe(writer).uploadThread(), nullptr);
    writer.sqlChkBox(true);
    QVERIFY(DataloggerProbe(writer).uploads());
    QCOMPARE(DataloggerProbe(writer).uploadThread(), nullptr);
    writer.sqlChkBox(false);
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(DataloggerProbe(writer).uploadThread(), nullptr);
}

namespace {

QList<double> nothingReceived()
{
    return QList<double>(10, -5005.0) + QList<double>(10, -5006.0) + QList<double>(10, -5007.0);
}

} // namespace

void tst_datalogger::sensors_nothingReceived_haveInitialValues()
{
    QCOMPARE(DataloggerProbe(datalogger()).sensorValues(), nothingReceived());
}

void tst_datalogger::sensors_eachSlot_setsOnlyItsValues_data()
{
    QTest::addColumn<int>("address");
    QTest::addColumn<int>("block"); // index of the first of its ten values
    QTest::newRow("first") << 1 << 0;
    QTest::newRow("second") << 2 << 10;
    QTest::newRow("third") << 3 << 20;
}

void tst_datalogger::sensors_eachSlot_setsOnlyItsValues()
{
    QFETCH(int, address);
    QFETCH(int, block);
    datalogger writer;
    const DataloggerProbe probe(writer);
    QList<double> expected = nothingReceived();
    const auto expect = [&expected, block](
                            int place, double value) { expected[block + place] = value; };
    writer.DataWindSpeedRecieved(address, 1.5, 2.5, 3.5);
    expect(0, 1.5);
    expect(1, 2.5);
    expect(2, 3.5);
    QCOMPARE(probe.sensorValues(), expected);
    writer.DataDirSpeedRecieved(address, 90, 180, 359);
    expect(3, 90);
    expect(4, 180);
    expect(5, 359);
    QCOMPARE(probe.sensorValues(), expected);
    writer.DataExtSpeedRecieved(address, 20.1, 20.2, 20.3);
    expect(6, 20.1);
    expect(7, 20.2);
    expect(8, 20.3);
    QCOMPARE(probe.sensorValues(), expected);
    writer.DataTempRecieved(address + 10, -40.25);
    expect(9, -40.25);
    QCOMPARE(probe.sensorValues(), expected);
    writer.DataWindSpeedRecieved(address, 0, 0, 0); // replaces the values
    expect(0, 0);
    expect(1, 0);
    expect(2, 0);
    QCOMPARE(probe.sensorValues(), expected);
}

void tst_datalogger::sensors_unknownAddresses_areIgnored()
{
    datalogger writer;
    for (const int address : {0, 4, 10, 11, 12, 13, 14, -1, 255, INT_MIN + 10, INT_MAX}) {
        writer.DataWindSpeedRecieved(address, 1, 1, 1);
        writer.DataDirSpeedRecieved(address, 1, 1, 1);
        writer.DataExtSpeedRecieved(address, 1, 1, 1);
    }
    for (const int address : {0, 1, 2, 3, 10, 14, -1, 255, INT_MIN, INT_MIN + 10, INT_MAX}) {
        writer.DataTempRecieved(address, 1);
    }
    QCOMPARE(DataloggerProbe(writer).sensorValues(), nothingReceived());
}

void tst_datalogger::sensors_areNotWritten()
{
    datalogger writer;
    LogCapture log;
    writer.DataWindSpeedRecieved(1, 1.5, 2.5, 3.5);
    writer.DataTempRecieved(11, 25);
    writer.DateTimeRecieve(kDate, kTime);
    QCOMPARE(contents(dayFile()), header(17) + "\r\n12:34:00\t\t\tОсновной");
}

QTEST_GUILESS_MAIN(tst_datalogger)
#include "tst_datalogger.moc"
