// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings.h"

#include "logcapture.h"
#include "metamembers.h"
#include "profile.h"

#include <QMetaMethod>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTest>

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <sys/stat.h>
#endif

// Replaces the ports of the machine with those of a test.
class SettingsProbe
{
public:
    static void setPorts(settings &reader, const QStringList &names)
    {
        s_names = names;
        reader.m_presentPorts = [] { return s_names; };
    }

private:
    static inline QStringList s_names;
};

Q_DECLARE_METATYPE(const ork2::SettingsKey *)

class tst_settings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanupTestCase();
    void keys_emptyStore_giveDefaults_data();
    void keys_emptyStore_giveDefaults();
    void value_tooLong_countsAsAbsent();
    void metaObject_members_areInDeclaredOrder();
    void factoryFile_read_givesItsValues();
    void windowsLineEndings_areReadAsLineFeeds();
    void dataFolder_lastLine_isStored_data();
    void dataFolder_lastLine_isStored();
    void values_areReadByPosition_data();
    void values_areReadByPosition();
    void missingFile_read_emitsPortsOnly();
    void unreadableFile_read_storesNothing();
    void noFileDescriptor_read_storesNothing();
    void hugeFile_read_isRefused();
    void pipe_read_isRefused();
    void comPort_readTwice_grows();
    void ports_present_areEmittedOnceEach_data();
    void ports_present_areEmittedOnceEach();
    void ports_ofTheMachine_areEmitted();
    void request_fromDocument_logsAndReads();

private:
    void writeFile(const QByteArray &text) const;
    QString m_path;
};

// The settings of an aborted earlier run must have no effect.
void tst_settings::initTestCase()
{
    profile::store(ork2::kUnitNumber, QStringLiteral("77"));
}

void tst_settings::init()
{
    profile::clear();
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/settings");
    QVERIFY(QDir().mkpath(folder));
    m_path = folder + QStringLiteral("/settings.txt");
    QFile::setPermissions(m_path, QFile::ReadOwner | QFile::WriteOwner);
    QFile::remove(m_path);
}

void tst_settings::cleanupTestCase()
{
    QFile::remove(m_path);
}

void tst_settings::writeFile(const QByteArray &text) const
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(text), text.size());
}

void tst_settings::keys_emptyStore_giveDefaults_data()
{
    QTest::addColumn<const ork2::SettingsKey *>("key");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("expected");
    const auto row = [](const ork2::SettingsKey &key, const char *name, const char *expected) {
        QTest::newRow(name + QByteArray(expected))
            << &key << QStringLiteral("SETTINGS/") + QString::fromLatin1(name)
            << QString::fromLatin1(expected);
    };
    row(ork2::kNamePath, "_NAME_PATH", "!");
    row(ork2::kUnitNumber, "_NUM", "1");
    row(ork2::kUnitYear, "_YEAR", "2014");
    row(ork2::kPortToOpen, "_COM", "COM3");
    row(ork2::kPortToShow, "_COM", "----");
    row(ork2::kServerHost, "_SERV_HOST", ORK2_DEFAULT_DB_HOST);
    row(ork2::kServerPort, "_SERV_PORT", "1433");
    row(ork2::kServerUser, "_SERV_USER", "uvi");
    row(ork2::kServerPassword, "_SERV_PASS", "");
    row(ork2::kServerStation, "_SERV_STATION", "-");
}

void tst_settings::keys_emptyStore_giveDefaults()
{
    QFETCH(const ork2::SettingsKey *, key);
    QFETCH(const QString, name);
    QFETCH(const QString, expected);
    QCOMPARE(key->name.toString(), name);
    QCOMPARE(ork2::storedText(*key), expected);
    const QSettings store = ork2::settingsStore();
    QCOMPARE(store.organizationName(), QStringLiteral("КАСТОР"));
    QCOMPARE(store.applicationName(), QStringLiteral("Терминал ОРК-2"));
    QCOMPARE(store.format(), QSettings::NativeFormat);
}

void tst_settings::value_tooLong_countsAsAbsent()
{
    const QString longest(ork2::kMaxValueLength, u'7');
    profile::store(ork2::kUnitNumber, longest);
    QCOMPARE(ork2::storedText(ork2::kUnitNumber), longest);
    profile::store(ork2::kUnitNumber, longest + u'7');
    QCOMPARE(ork2::storedText(ork2::kUnitNumber), QStringLiteral("1"));
}

void tst_settings::metaObject_members_areInDeclaredOrder()
{
    const QMetaObject &meta = settings::staticMetaObject;
    const QByteArrayList methods = methodSignatures(meta);
    QCOMPARE(methods,
        QByteArrayList({"sendSettingsToQml(QString)", "sendComPortSettingsToQml(QString)",
            "receiveSignalFromQml()", "readSettingsFile()"}));
}

void tst_settings::factoryFile_read_givesItsValues()
{
    QVERIFY(QFile::copy(QStringLiteral(FACTORY_FILE), m_path));
    settings reader;
    QCOMPARE(reader.baudRate(), 0U);
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    reader.readSettingsFile();
    QVERIFY(reader.fileRead());
    QCOMPARE(reader.baudRate(), 9600U);
    QCOMPARE(reader.parity(), 0U);
    QCOMPARE(reader.pathToData(), QStringLiteral("~/ORK2/Data"));
    QCOMPARE(profile::stored(ork2::kNamePath), QVariant(QStringLiteral("!")));
    QCOMPARE(texts,
        (QList<QVariantList>{{QStringLiteral("Настройки для программы \"Терминал ОРК-2\"\n"
                                             "\n"
                                             "BaudRate = 9600\n"
                                             "Parity = 0\n"
                                             "PathToLog = \"~/ORK2/Log\"\n"
                                             "PathToData = \"~/ORK2/Data\"")}}));
}

void tst_settings::windowsLineEndings_areReadAsLineFeeds()
{
    writeFile("a\r\n\r\nBaudRate = 9600\r\nParity = 2\r\nPathToData = \"/srv/meteo/\"\r\n");
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    reader.readSettingsFile();
    QCOMPARE(texts.constLast().first().toString(),
        QStringLiteral("a\n\nBaudRate = 9600\nParity = 2\nPathToData = \"/srv/meteo/\"\n"));
}

void tst_settings::dataFolder_lastLine_isStored_data()
{
    QTest::addColumn<QByteArray>("lastLine");
    QTest::addColumn<QString>("stored");
    QTest::newRow("a folder") << QByteArray("PathToData = \"D:/Meteo/\"")
                              << QStringLiteral("D:/Meteo/");
    QTest::newRow("line feed at the end")
        << QByteArray("PathToData = \"D:/Meteo/\"\n") << QStringLiteral("D:/Meteo/");
    QTest::newRow("CR LF at the end")
        << QByteArray("PathToData = \"D:/Meteo/\"\r\n") << QStringLiteral("D:/Meteo/");
    QTest::newRow("Cyrillic and spaces")
        << QByteArray("x \"/srv/Данные станции/\"") << QStringLiteral("/srv/Данные станции/");
    QTest::newRow("tilde") << QByteArray("PathToData = \"~/x\"") << QStringLiteral("!");
    QTest::newRow("empty quotes") << QByteArray("PathToData = \"\"") << QStringLiteral("!");
    QTest::newRow("no quotes") << QByteArray("PathToData = D:/Meteo/") << QStringLiteral("!");
    QTest::newRow("one quote") << QByteArray("PathToData = \"/a/") << QStringLiteral("/a/");
    QTest::newRow("two pairs") << QByteArray("\"/a/\" \"/b/\"") << QStringLiteral("/a/");
}

void tst_settings::dataFolder_lastLine_isStored()
{
    QFETCH(QByteArray, lastLine);
    QFETCH(QString, stored);
    writeFile("x\n\nBaudRate = 9600\nParity = 0\n\"/not/this/\"\n" + lastLine);
    settings reader;
    reader.readSettingsFile();
    QCOMPARE(profile::stored(ork2::kNamePath), QVariant(stored));
    QCOMPARE(reader.namePath(), stored);
}

void tst_settings::values_areReadByPosition_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<quint32>("baudRate");
    QTest::addColumn<quint32>("parity");
    QTest::newRow("other words") << QByteArray("\n\na b 300\nc d 2\n") << 300U << 2U;
    QTest::newRow("two spaces shift the word") << QByteArray("\n\na  b 300\nc d 2 9\n") << 0U << 2U;
    QTest::newRow("not a number") << QByteArray("\n\na b c\nd e -2\n") << 0U << 0U;
    QTest::newRow("words missing") << QByteArray("\n\na\n\n") << 0U << 0U;
    QTest::newRow("three lines") << QByteArray("\n\na b 300") << 300U << 0U;
    QTest::newRow("one line") << QByteArray("a b 300") << 0U << 0U;
    QTest::newRow("empty") << QByteArray() << 0U << 0U;
    QTest::newRow("binary") << QByteArray("\0\xff\n\"\n\xfe\0 \0", 10) << 0U << 0U;
}

void tst_settings::values_areReadByPosition()
{
    QFETCH(QByteArray, text);
    QFETCH(quint32, baudRate);
    QFETCH(quint32, parity);
    writeFile(text);
    settings reader;
    reader.readSettingsFile();
    QVERIFY(reader.fileRead());
    QCOMPARE(reader.baudRate(), baudRate);
    QCOMPARE(reader.parity(), parity);
    QCOMPARE(profile::stored(ork2::kNamePath), QVariant(QStringLiteral("!")));
}

void tst_settings::missingFile_read_emitsPortsOnly()
{
    settings reader;
    SettingsProbe::setPorts(reader, {QStringLiteral("ttyUSB0")});
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    QSignalSpy ports(&reader, &settings::sendComPortSettingsToQml);
    LogCapture log;
    reader.readSettingsFile();
    QVERIFY(!reader.fileRead());
    QCOMPARE(texts.count(), 0);
    QCOMPARE(ports, (QList<QVariantList>{{QStringLiteral("ttyUSB0")}}));
    QVERIFY(!profile::stored(ork2::kNamePath).isValid());
    QCOMPARE(log.lines().mid(0, 3),
        QStringList({QStringLiteral("Settings started"), QStringLiteral("File not existed"),
            QStringLiteral("File wasn't open")}));
    QCOMPARE(reader.comPort(), QStringLiteral("COM3"));
}

void tst_settings::unreadableFile_read_storesNothing()
{
    // Not even root can open a folder as a file.
    QVERIFY(QDir().mkpath(m_path));
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    LogCapture log;
    reader.readSettingsFile();
    QDir().rmdir(m_path);
    QVERIFY(log.lines().contains(QStringLiteral("File wasn't open")));
    QVERIFY(!log.lines().contains(QStringLiteral("File not existed")));
    QVERIFY(!reader.fileRead());
    QCOMPARE(texts.count(), 0);
    QVERIFY(!profile::stored(ork2::kNamePath).isValid());
}

void tst_settings::noFileDescriptor_read_storesNothing()
{
#ifdef Q_OS_UNIX
    writeFile("a\n\nBaudRate = 1\nParity = 2\nPathToData = \"/srv/\"\n");
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    LogCapture log;
    rlimit limit = {};
    QCOMPARE(getrlimit(RLIMIT_NOFILE, &limit), 0);
    const rlimit none = {0, limit.rlim_max};
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &none), 0);
    reader.readSettingsFile();
    QCOMPARE(setrlimit(RLIMIT_NOFILE, &limit), 0);
    QVERIFY(log.lines().contains(QStringLiteral("\"Too many open files\"")));
    QVERIFY(!reader.fileRead());
    QCOMPARE(texts.count(), 0);
    QVERIFY(!profile::stored(ork2::kNamePath).isValid());
#else
    QSKIP("The number of open files can be limited on Unix only");
#endif
}

void tst_settings::hugeFile_read_isRefused()
{
    writeFile({});
    QFile file(m_path);
    QVERIFY(file.resize(qint64{1} << 30)); // sparse, so it uses no disk space
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    LogCapture log;
    reader.readSettingsFile();
    QVERIFY(file.resize(0));
    QVERIFY(!reader.fileRead());
    QCOMPARE(texts.count(), 0);
    QVERIFY(log.lines().contains(QStringLiteral("File wasn't open")));
}

void tst_settings::pipe_read_isRefused()
{
#ifndef Q_OS_UNIX
    QSKIP("Named pipes are files on Unix only");
#else
    // There is no writer, so opening the pipe would block until the test times out.
    QCOMPARE(mkfifo(m_path.toLocal8Bit().constData(), 0600), 0);
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    reader.readSettingsFile();
    QVERIFY(!reader.fileRead());
    QCOMPARE(texts.count(), 0);
#endif
}

void tst_settings::comPort_readTwice_grows()
{
    writeFile("x");
    settings reader;
    reader.readSettingsFile();
    reader.readSettingsFile();
    QCOMPARE(reader.comPort(), QStringLiteral("COM3COM3"));
}

void tst_settings::ports_present_areEmittedOnceEach_data()
{
    QTest::addColumn<QStringList>("ports");
    QTest::newRow("none") << QStringList();
    QTest::newRow("one") << QStringList{QStringLiteral("ttyS0")};
    QTest::newRow("in the order of the system")
        << QStringList{QStringLiteral("ttyUSB1"), QStringLiteral("ttyS0"), QStringLiteral("COM3")};
}

void tst_settings::ports_present_areEmittedOnceEach()
{
    QFETCH(const QStringList, ports);
    settings reader;
    SettingsProbe::setPorts(reader, ports);
    QSignalSpy emitted(&reader, &settings::sendComPortSettingsToQml);
    reader.readSettingsFile();
    QStringList names;
    for (const QVariantList &arguments : emitted) {
        names << arguments.first().toString();
    }
    QCOMPARE(names, ports);
}

// Only meaningful on a machine with a serial port.
void tst_settings::ports_ofTheMachine_areEmitted()
{
    settings reader;
    QSignalSpy emitted(&reader, &settings::sendComPortSettingsToQml);
    reader.readSettingsFile();
    QStringList names;
    for (const QVariantList &arguments : emitted) {
        names << arguments.first().toString();
    }
    QStringList expected;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        expected << port.portName();
    }
    QCOMPARE(names, expected);
}

void tst_settings::request_fromDocument_logsAndReads()
{
    writeFile("x");
    settings reader;
    QSignalSpy texts(&reader, &settings::sendSettingsToQml);
    LogCapture log;
    reader.receiveSignalFromQml();
    QCOMPARE(log.lines().first(),
        QStringLiteral("Получен запрос на чтение данных из файла в C ++ из QML"));
    QCOMPARE(texts, (QList<QVariantList>{{QStringLiteral("x")}}));
}

QTEST_GUILESS_MAIN(tst_settings)
#include "tst_settings.moc"
