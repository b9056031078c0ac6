// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QStringList>

// Reads the settings file "settings/settings.txt" in the program folder when requested by the
// settings window, sends its text and the available serial ports to the window, and saves the data
// folder in the settings store. Main thread. The file is read by position, not by key: the third
// word of the third and of the fourth line, and the quoted text of the last line.
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
    void sendComPortSettingsToQml(QString cPort); // once for each available port

public Q_SLOTS:
    void receiveSignalFromQml();
    // A missing or unreadable file is reported in the debug log only, and nothing is stored.
    void readSettingsFile();

private:
    friend class SettingsProbe; // sets the ports in tests

    [[nodiscard]] static QStringList portsOfThisMachine();
    void parseValues(const QByteArray &text);

    quint32 m_baudRate = 0; // not used for the port, whose parameters are fixed
    quint32 m_parity = 0;
    bool m_fileRead = false;
    QString m_pathToData;
    QString m_comPort; // appended to at each read; only logged
    QString m_namePath;
    QStringList (*m_presentPorts)() = &settings::portsOfThisMachine;
};
