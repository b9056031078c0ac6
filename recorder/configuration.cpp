// SPDX-License-Identifier: GPL-3.0-or-later
#include "configuration.h"

#include "inifile.h"
#include "portname.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>

#include <functional>
#include <limits>

namespace ork2 {

namespace {

constexpr qint64 kMaxConfigurationSize = 1'048'576; // a larger file is no configuration
constexpr int kMaxTcpPort = 65535;

// The values as they stand in the file, and what is wrong with them.
struct Reader
{
    QString port;
    int unitNumber = 0;
    QString folder;
    bool upload = false;
    DatabaseServer server{{}, 1433, QStringLiteral("uvi"), {}, QStringLiteral("-")};
};

// Stores a value; returns what is allowed if it is wrong, otherwise an empty text.
using Store = std::function<QString(Reader &, const QString &)>;

const QString kPortAllowed = QStringLiteral(
    "нужно имя порта, например ttyUSB0, или полный путь, например /dev/serial/by-id/…");
const QString kUnitAllowed = QStringLiteral("нужен номер прибора: целое число от 1 до %1")
                                 .arg(std::numeric_limits<int>::max());

QString storePort(Reader &reader, const QString &value)
{
    const bool good = !value.isEmpty() && (value.startsWith(u'/') || !value.contains(u'/'));
    reader.port = value;
    return good ? QString() : kPortAllowed;
}

QString storeUnit(Reader &reader, const QString &value)
{
    bool isNumber = false;
    reader.unitNumber = value.toInt(&isNumber);
    return isNumber && reader.unitNumber > 0 ? QString() : kUnitAllowed;
}

QString storeFolder(Reader &reader, const QString &value)
{
    reader.folder = value;
    return value.isEmpty() || QDir::isAbsolutePath(value)
        ? QString()
        : QStringLiteral("нужен полный путь к папке, например /srv/meteo, или пустое значение");
}

QString storeUpload(Reader &reader, const QString &value)
{
    reader.upload = value == u"true";
    return reader.upload || value == u"false" ? QString()
                                              : QStringLiteral("годится только true или false");
}

QString storeServerPort(Reader &reader, const QString &value)
{
    bool isNumber = false;
    reader.server.port = value.toInt(&isNumber);
    return isNumber && reader.server.port > 0 && reader.server.port <= kMaxTcpPort
        ? QString()
        : QStringLiteral("нужно целое число от 1 до %1").arg(kMaxTcpPort);
}

// These characters would end the value in the connection string or in the statement.
Store storeText(QString DatabaseServer::*member)
{
    return [member](Reader &reader, const QString &value) {
        reader.server.*member = value;
        const bool good = !value.contains(u'\'') && !value.contains(u';') && !value.contains(u'{')
            && !value.contains(u'}');
        return good ? QString() : QStringLiteral("нельзя употреблять знаки ' ; { }");
    };
}

const QHash<QString, Store> &keys()
{
    static const QHash<QString, Store> known{
        {QStringLiteral("[line] port"), storePort},
        {QStringLiteral("[files] unit"), storeUnit},
        {QStringLiteral("[files] folder"), storeFolder},
        {QStringLiteral("[database] upload"), storeUpload},
        {QStringLiteral("[database] host"), storeText(&DatabaseServer::host)},
        {QStringLiteral("[database] port"), storeServerPort},
        {QStringLiteral("[database] user"), storeText(&DatabaseServer::user)},
        {QStringLiteral("[database] password"), storeText(&DatabaseServer::password)},
        {QStringLiteral("[database] station"), storeText(&DatabaseServer::station)},
    };
    return known;
}

QString nameOf(const IniEntry &entry)
{
    return QStringLiteral("[%1] %2").arg(entry.section, entry.key);
}

// Passwords must not appear in the journal.
QString shownValue(const IniEntry &entry)
{
    return entry.key == u"password" ? QStringLiteral("…") : entry.value;
}

// Returns what is wrong with an entry, or an empty text.
QString store(Reader &reader, const IniEntry &entry)
{
    const auto known = keys().constFind(nameOf(entry));
    if (known == keys().constEnd()) {
        QStringList names = keys().keys();
        names.sort();
        return QStringLiteral("такого ключа нет; есть: %1").arg(names.join(QLatin1String(", ")));
    }
    const QString allowed = (*known)(reader, entry.value);
    return allowed.isEmpty()
        ? QString()
        : QStringLiteral("значение «%1» не годится: %2").arg(shownValue(entry), allowed);
}

// Returns what is missing, or an empty text.
QString missing(const Reader &reader)
{
    if (reader.port.isEmpty()) {
        return QStringLiteral("[line] port: порт не задан; ") + kPortAllowed;
    }
    if (reader.unitNumber == 0) {
        return QStringLiteral("[files] unit: номер не задан; ") + kUnitAllowed;
    }
    if (reader.upload && reader.server.host.isEmpty()) {
        return QStringLiteral("[database] host: передача включена, а адрес сервера не задан");
    }
    return {};
}

Configuration configurationOf(const Reader &reader)
{
    Configuration configuration;
    configuration.port = portPath(reader.port);
    configuration.place = {reader.folder.isEmpty() ? automaticFolder(kTerminalFolder.toString())
                                                   : QDir::cleanPath(reader.folder),
        reader.unitNumber};
    configuration.upload = reader.upload;
    if (reader.upload) {
        configuration.server = reader.server;
        // Qt's driver does not pass its port to the server; drivers accept it after the address.
        configuration.server.host += QStringLiteral(",%1").arg(reader.server.port);
    }
    return configuration;
}

QString readFile(const QString &path, QString &text)
{
    QFile file(path);
    if (!QFileInfo::exists(path)) {
        return QStringLiteral("такого файла нет");
    }
    // Opening a pipe would wait for its other end.
    if (!QFileInfo(path).isFile() || file.size() > kMaxConfigurationSize) {
        return QStringLiteral("это не файл настроек");
    }
    if (!file.open(QIODevice::ReadOnly)) {
        return QStringLiteral("прочитать его нельзя (%1)").arg(file.errorString());
    }
    text = QString::fromUtf8(file.readAll());
    return {};
}

} // namespace

ConfigurationResult readConfiguration(const QString &path)
{
    const auto wrong = [&path](const QString &what) {
        return ConfigurationResult{std::nullopt, QStringLiteral("Файл %1: %2.").arg(path, what)};
    };
    QString text;
    if (const QString error = readFile(path, text); !error.isEmpty()) {
        return wrong(error);
    }
    const IniContents contents = readIni(text);
    Reader reader;
    QStringList seen;
    for (const IniEntry &entry : contents.entries) {
        const QString name = nameOf(entry);
        const QString error =
            seen.contains(name) ? QStringLiteral("ключ задан дважды") : store(reader, entry);
        if (!error.isEmpty()) {
            return wrong(QStringLiteral("строка %1, %2: %3").arg(entry.line).arg(name, error));
        }
        seen << name;
    }
    if (contents.wrongLine > 0) {
        return wrong(QStringLiteral("строка %1: нужно «[раздел]», «ключ=значение» или пояснение "
                                    "после знака #")
                         .arg(contents.wrongLine));
    }
    if (const QString error = missing(reader); !error.isEmpty()) {
        return wrong(error);
    }
    return {configurationOf(reader), {}};
}

QString automaticFolder(const QString &terminalFolder)
{
    const bool installed = QFileInfo(terminalFolder + QStringLiteral("/Data")).isDir();
    return installed ? terminalFolder : kServiceFolder.toString();
}

QString uploadStorePath(const Configuration &configuration)
{
    const QString state = qEnvironmentVariable("STATE_DIRECTORY");
    const QString folder =
        state.isEmpty() ? configuration.place.base + QStringLiteral("/Data") : state;
    return folder + QStringLiteral("/ork2-upload.sqlite");
}

} // namespace ork2
