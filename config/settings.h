// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

// Reads the settings file "settings/settings.txt" beside the program when the settings panel asks
// for it, tells the panel its text and the serial ports present, and keeps the data folder in the
// settings store. Main thread. The file is read by position, not by key: third word of the third
// and fourth line, quoted text of the last line.
class settings : public QObject
{
    Q_OBJECT

public:
    explicit settings(QObject *parent = nullptr);

    [[nodiscard]] quint32 baudRate() const { return m_baudRate; }
    [[nodiscard]] quint32 parity() const { return m_parity; }
    [[nodiscard]] bool fileRead() const { return m_fileRead; }
    [[nodiscard]] QString pathToData() const { return m_pathToData; }
    [[nodiscard]] QString comPort() const { return m_comPort; }
    [[nodiscard]] QString namePath() const { return m_namePath; }

Q_SIGNALS:
    void sendSettingsToQml(QString data);
    void sendComPortSettingsToQml(QString cPort); // once for each port present

public Q_SLOTS:
    void receiveSignalFromQml();
    // A missing or unreadable file is told in the debug log only; nothing is stored then.
    void readSettingsFile();

private:
    friend class SettingsProbe; // tests set the ports

    [[nodiscard]] static QStringList portsOfThisMachine();
    void takeValues(const QByteArray &text);

    quint32 m_baudRate = 0; // baud; kept here only, the line's own parameters are fixed
    quint32 m_parity = 0;
    bool m_fileRead = false;
    QString m_pathToData;
    QString m_comPort; // grows with every read; only logged
    QString m_namePath;
    QStringList (*m_presentPorts)() = &settings::portsOfThisMachine;
};
