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
constexpr qsizetype kQuotedPiece = 1;
// A settings file is a few lines; a longer one is something else, and reading it whole would only
// take the memory away from the measurement.
constexpr qint64 kLongestFile = 1'048'576;

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
        // A pipe would be waited for and a device read without end, with the window standing still.
        qDebug() << "Settings file is no regular file and is not read";
    } else if (file.size() > kLongestFile) {
        qDebug() << "Settings file is longer than" << kLongestFile << "bytes and is not read";
    } else if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << file.errorString();
    }
    QByteArray text;
    m_fileRead = file.isOpen();
    if (m_fileRead) {
        text = file.read(kLongestFile);
        file.close();
    } else {
        qDebug() << "File wasn't open";
    }

    const QStringList ports = m_presentPorts();
    for (const QString &port : ports) {
        Q_EMIT sendComPortSettingsToQml(port);
    }

    // Appended, not replaced: the text only goes to the log, where each read adds its port.
    m_comPort += ork2::storedText(store, ork2::kPortToOpen);
    qDebug() << m_comPort;

    if (!m_fileRead) {
        return;
    }
    takeValues(text);
    ork2::storeText(store, ork2::kNamePath, m_namePath);
    store.sync();
    Q_EMIT sendSettingsToQml(QString::fromUtf8(text));
}

void settings::takeValues(const QByteArray &text)
{
    QList<QByteArray> lines = text.split('\n');
    if (lines.size() > 1 && lines.constLast().isEmpty()) {
        lines.removeLast(); // editors end the last line with a line feed, too
    }
    m_baudRate = numberInLine(lines, kBaudRateLine);
    m_parity = numberInLine(lines, kParityLine);
    m_pathToData = QString::fromUtf8(lines.constLast().split('"').value(kQuotedPiece));
    const bool usable = !m_pathToData.isEmpty() && !m_pathToData.startsWith(u'~');
    m_namePath = usable ? m_pathToData : ork2::kNamePath.fallback.toString();
}
