// SPDX-License-Identifier: GPL-3.0-or-later
#include "configuration.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using ork2::ConfigurationResult;
using ork2::readConfiguration;

class tst_configuration : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shipped_withPort_isComplete();
    void values_areTakenLiterally();
    void upload_off_needsNoServer();
    void wrongValue_isNamed_data();
    void wrongValue_isNamed();
    void password_isNotShown();
    void file_thatCannotBeRead_isNamed();
    void automaticFolder_prefersTheTerminal();
    void uploadStore_isInTheStateFolder();

private:
    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("r.conf")); }
    [[nodiscard]] ConfigurationResult read(const QString &text) const;

    QTemporaryDir m_folder;
};

ConfigurationResult tst_configuration::read(const QString &text) const
{
    QFile file(path());
    if (!file.open(QIODevice::WriteOnly)) {
        return {};
    }
    file.write(text.toUtf8());
    file.close();
    return readConfiguration(path());
}

// The file of the package is complete but for the port, which nobody can know in advance.
void tst_configuration::shipped_withPort_isComplete()
{
    QFile shipped(QStringLiteral(SHIPPED));
    QVERIFY(shipped.open(QIODevice::ReadOnly));
    QString text = QString::fromUtf8(shipped.readAll());
    QVERIFY(read(text).error.contains(QLatin1String("[line] port")));
    text.replace(QLatin1String("\nport=\n"), QLatin1String("\nport=ttyUSB0\n"));
    const ConfigurationResult result = read(text);
    QCOMPARE(result.error, QString());
    QCOMPARE(result.configuration->port, QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(result.configuration->place.unitNumber, 1);
    QVERIFY(!result.configuration->upload);
}

void tst_configuration::values_areTakenLiterally()
{
    const ConfigurationResult result =
        read(QStringLiteral("# пояснение\n; пояснение\n[line]\r\nport = /dev/serial/by-id/x,y \n"
                            "[files]\nunit=17\nfolder=/srv/Метео/\n[database]\nupload=true\n"
                            "host=10.0.0.7\nport=1444\nuser=u\npassword=a=\"b\\,#c\"\n"
                            "station=Пост 3\n"));
    QCOMPARE(result.error, QString());
    const ork2::Configuration &read = *result.configuration;
    QCOMPARE(read.port, QStringLiteral("/dev/serial/by-id/x,y"));
    QCOMPARE(read.place.base, QStringLiteral("/srv/Метео"));
    QCOMPARE(read.place.unitNumber, 17);
    QVERIFY(read.upload);
    QCOMPARE(read.server.host, QStringLiteral("10.0.0.7,1444"));
    QCOMPARE(read.server.user, QStringLiteral("u"));
    QCOMPARE(read.server.password, QStringLiteral("a=\"b\\,#c\""));
    QCOMPARE(read.server.station, QStringLiteral("Пост 3"));
}

void tst_configuration::upload_off_needsNoServer()
{
    const ConfigurationResult result =
        read(QStringLiteral("[line]\nport=p\n[files]\nunit=1\n[database]\nupload=false\n"));
    QCOMPARE(result.error, QString());
    QCOMPARE(result.configuration->server, ork2::DatabaseServer());
}

void tst_configuration::wrongValue_isNamed_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *name, const QString &text, const QString &message) {
        QTest::newRow(name) << text << message;
    };
    const QString good = QStringLiteral("[line]\nport=p\n[files]\nunit=1\n");
    row("empty file", QString(), QStringLiteral("[line] port: порт не задан; нужно имя порта"));
    row("no unit", QStringLiteral("[line]\nport=p\n"),
        QStringLiteral("[files] unit: номер не задан; нужен номер прибора"));
    row("unit is no number", QStringLiteral("[files]\nunit=17а\n"),
        QStringLiteral("строка 2, [files] unit: значение «17а» не годится: нужен номер"));
    row("unit 0", QStringLiteral("[files]\nunit=0\n"), QStringLiteral("«0» не годится"));
    row("unit too large", QStringLiteral("[files]\nunit=2147483648\n"),
        QStringLiteral("от 1 до 2147483647"));
    row("empty port", QStringLiteral("[line]\nport=\n"), QStringLiteral("[line] port"));
    row("relative port", QStringLiteral("[line]\nport=dev/tty\n"), QStringLiteral("«dev/tty»"));
    row("relative folder", QStringLiteral("[files]\nfolder=data\n"),
        QStringLiteral("нужен полный путь к папке"));
    row("upload is no truth value", QStringLiteral("[database]\nupload=yes\n"),
        QStringLiteral("годится только true или false"));
    row("upload without server", good + QStringLiteral("[database]\nupload=true\n"),
        QStringLiteral("[database] host: передача включена"));
    row("server port", QStringLiteral("[database]\nport=65536\n"), QStringLiteral("от 1 до 65535"));
    row("quote in station", QStringLiteral("[database]\nstation=a'b\n"),
        QStringLiteral("нельзя употреблять"));
    row("semicolon in host", QStringLiteral("[database]\nhost=a;b\n"),
        QStringLiteral("нельзя употреблять"));
    row("unknown key", QStringLiteral("[line]\nprot=x\n"),
        QStringLiteral("строка 2, [line] prot: такого ключа нет; есть: "));
    row("key of another section", QStringLiteral("[files]\nhost=x\n"),
        QStringLiteral("[files] host: такого ключа нет"));
    row("key given twice", QStringLiteral("[line]\nport=a\nport=b\n"),
        QStringLiteral("строка 3, [line] port: ключ задан дважды"));
    row("other text", QStringLiteral("[line]\nport\n"),
        QStringLiteral("строка 2: нужно «[раздел]»"));
}

void tst_configuration::wrongValue_isNamed()
{
    QFETCH(QString, text);
    QFETCH(QString, message);
    const ConfigurationResult result = read(text);
    QVERIFY(!result.configuration);
    QVERIFY2(
        result.error.startsWith(QStringLiteral("Файл %1: ").arg(path())), qPrintable(result.error));
    QVERIFY2(result.error.contains(message), qPrintable(result.error));
    QVERIFY2(result.error.endsWith(u'.'), qPrintable(result.error));
}

void tst_configuration::password_isNotShown()
{
    const QString error = read(QStringLiteral("[database]\npassword=sec;ret\n")).error;
    QVERIFY2(error.contains(QLatin1String("password")), qPrintable(error));
    QVERIFY2(!error.contains(QLatin1String("sec")), qPrintable(error));
}

void tst_configuration::file_thatCannotBeRead_isNamed()
{
    const QString absent = m_folder.filePath(QStringLiteral("absent"));
    QCOMPARE(
        readConfiguration(absent).error, QStringLiteral("Файл %1: такого файла нет.").arg(absent));
    QCOMPARE(readConfiguration(m_folder.path()).error,
        QStringLiteral("Файл %1: это не файл настроек.").arg(m_folder.path()));
}

void tst_configuration::automaticFolder_prefersTheTerminal()
{
    QCOMPARE(ork2::automaticFolder(m_folder.path()), QStringLiteral("/var/lib/ork2"));
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("Data")));
    QCOMPARE(ork2::automaticFolder(m_folder.path()), m_folder.path());
}

void tst_configuration::uploadStore_isInTheStateFolder()
{
    const ork2::Configuration configuration{{}, {QStringLiteral("/srv"), 1}, true, {}};
    qunsetenv("STATE_DIRECTORY");
    QCOMPARE(ork2::uploadStorePath(configuration), QStringLiteral("/srv/Data/ork2-upload.sqlite"));
    qputenv("STATE_DIRECTORY", "/var/lib/x");
    QCOMPARE(ork2::uploadStorePath(configuration), QStringLiteral("/var/lib/x/ork2-upload.sqlite"));
    qunsetenv("STATE_DIRECTORY");
}

QTEST_GUILESS_MAIN(tst_configuration)
#include "tst_configuration.moc"
