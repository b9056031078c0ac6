// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings.h"

#include "settingskeys.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QSerialPortInfo>

namespace {

constexpr qsizetype kBaudRateLine = 2;
constexpr qsizetype kParityLine = 3;
constexpr qsizetype kNumberWord = 2;
constexpr qsizetype kQuotedPart = 1;
// A settings file has a few lines. A larger file is not a settings file, and reading it would use
// memory that the measurement needs.
constexpr qint64 kMaxFileSize = 1'048'576;

quint32 numberInLine(const QList<QByteArray> &lines, qsizetype line)
{
    return lines.value(line).split(' ').value(kNumberWord).toUInt();
}

} // namespace

settings::settings(QObject *parent)
    : QObject(parent)
{ }

void settings::receiveSignalFromQml()
{
    qDebug() << "Получен запрос на чтение данных из файла в C ++ из QML";
    readSettingsFile();
}

QStringList settings::portsOfThisMachine()
{
    QStringList names;
    const auto ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo &port : ports) {
        names << port.portName();
    }
    return names;
}

void settings::readSettingsFile()
{
    QSettings store = ork2::settingsStore();
    qDebug() << "Settings started";

    QFile file(QCoreApplication::applicationDirPath() + QStringLiteral("/settings/settings.txt"));
    if (!file.exists()) {
        qDebug() << "File not existed";
    } else if (!QFileInfo(file).isFile()) {
        // Opening a pipe or reading a device could block the user interface.
        qDebug() << "Settings file is no regular file and is not read";
    } else if (file.size() > kMaxFileSize) {
        qDebug() << "Settings file is longer than" << kMaxFileSize << "bytes and is not read";
    } else if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << file.errorString();
    }
    QByteArray text;
    m_fileRead = file.isOpen();
    if (m_fileRead) {
        text = file.read(kMaxFileSize);
        file.close();
    } else {
        qDebug() << "File wasn't open";
    }

    const QStringList ports = m_presentPorts();
    for (const QString &port : ports) {
        Q_EMIT sendComPortSettingsToQml(port);
    }

    // Intentional: appended, not replaced. The text is only logged.
    m_comPort += ork2::storedText(store, ork2::kPortToOpen);
    qDebug() << m_comPort;

    if (!m_fileRead) {
        return;
    }
    parseValues(text);
    ork2::storeText(store, ork2::kNamePath, m_namePath);
    store.sync();
    Q_EMIT sendSettingsToQml(QString::fromUtf8(text));
}

void settings::parseValues(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    if (lines.size() > 1 && lines.constLast().isEmpty()) {
        lines.removeLast(); // editors also end the last line with a line feed
    }
    m_baudRate = numberInLine(lines, kBaudRateLine);
    m_parity = numberInLine(lines, kParityLine);
    m_pathToData = QString::fromUtf8(lines.constLast().split('"').value(kQuotedPart));
    const bool usable = !m_pathToData.isEmpty() && !m_pathToData.startsWith(u'~');
    m_namePath = usable ? m_pathToData : ork2::kNamePath.fallback.toString();
}
