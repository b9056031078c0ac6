// SPDX-License-Identifier: GPL-3.0-or-later
#include "check.h"

#include "configuration.h"
#include "databasesql.h"
#include "portname.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSerialPort>
#include <QTemporaryFile>
#include <QTextStream>

#include <unistd.h>

namespace ork2 {

namespace {

class Report
{
public:
    void say(const QString &text) { m_output << "    " << text << Qt::endl; }
    void warn(const QString &text)
    {
        m_good = false;
        m_output << "  ! " << text << Qt::endl;
    }
    [[nodiscard]] bool good() const { return m_good; }

private:
    QTextStream m_output{stdout};
    bool m_good = true;
};

// Returns the name of the process in the lock file of the device, or an empty text.
QString lockHolder(const QString &device)
{
    QString name = device;
    name.remove(QLatin1String("/dev/")).replace(u'/', u'_');
    QFile lock(QStringLiteral("/var/lock/LCK..") + name);
    if (!lock.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray id = lock.readLine().trimmed();
    QFile process(QStringLiteral("/proc/%1/comm").arg(QString::fromLatin1(id)));
    return process.open(QIODevice::ReadOnly) ? QString::fromUtf8(process.readAll().trimmed())
                                             : QString();
}

void checkPort(Report &report, const QString &path)
{
    const QString device = portDevice(path);
    report.say(
        QStringLiteral("Порт: %1. Пока его нет, служба ждёт и открывает его снова.").arg(path));
    if (!QFileInfo::exists(device)) {
        report.warn(QStringLiteral("Сейчас порта нет: подключите адаптер или исправьте имя."));
        return;
    }
    if (::access(device.toLocal8Bit().constData(), R_OK | W_OK) != 0) {
        report.warn(QStringLiteral("Права на порт нет: нужна группа устройства %1 (%2).")
                        .arg(device, QFileInfo(device).group()));
        return;
    }
    const QString holder = lockHolder(device);
    if (holder == u"ork2-recorder") {
        report.say(QStringLiteral("Порт открыт службой ork2-recorder: так и должно быть."));
        return;
    }
    QSerialPort port(device);
    if (port.open(QIODevice::ReadWrite)) {
        report.say(QStringLiteral("Порт открывается."));
    } else {
        report.warn(
            QStringLiteral("Порт не открывается: %1. Его держит: %2.")
                .arg(port.errorString(), holder.isEmpty() ? QStringLiteral("неизвестно") : holder));
    }
}

void checkFolder(Report &report, const RecordingPlace &place)
{
    const QString folder = dayFileFolder(place);
    report.say(
        QStringLiteral("Раз в минуту строка пишется в файл %1<гггг.мм.дд>.txt.").arg(folder));
    // Like the file writer, which creates missing folders; here only their parent is tried.
    const QDir existing = nearestFolder(folder);
    QTemporaryFile trial(existing.absoluteFilePath(QStringLiteral(".ork2-check-XXXXXX")));
    if (trial.open() && trial.write("1") == 1 && trial.flush()) {
        report.say(QStringLiteral("Писать в папку %1 можно.").arg(existing.absolutePath()));
    } else {
        report.warn(QStringLiteral("Писать в папку %1 нельзя: %2.")
                        .arg(existing.absolutePath(), trial.errorString()));
    }
}

void checkServer(Report &report, const Configuration &configuration)
{
    if (!configuration.upload) {
        report.say(QStringLiteral("На сервер ничего не передаётся, сеть не нужна."));
        return;
    }
    report.say(QStringLiteral("Каждая строка передаётся на сервер %1, станция «%2». Пока сервера "
                              "нет, строки ждут в файле %3.")
                   .arg(configuration.server.host, configuration.server.station,
                       uploadStorePath(configuration)));
    databasesql connection(configuration.server);
    if (connection.open()) {
        report.say(QStringLiteral("Сервер отвечает."));
    } else {
        report.warn(QStringLiteral("Сервер не отвечает: %1.").arg(connection.lastError()));
    }
    connection.close();
}

} // namespace

bool checkConfiguration(const Configuration &configuration)
{
    Report report;
    checkPort(report, configuration.port);
    checkFolder(report, configuration.place);
    checkServer(report, configuration);
    report.say(report.good() ? QStringLiteral("Всё в порядке.")
                             : QStringLiteral("Исправьте строки со знаком «!»."));
    return report.good();
}

} // namespace ork2
