// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "configuration.h"
#include "portwatch.h"
#include "servicemanager.h"
#include "station.h"

#include <QDate>
#include <QObject>
#include <QTimer>

#include <memory>

namespace ork2 {

class Uploader;

inline constexpr int kStatusIntervalMs = 10000; // how often the service's status line is renewed

// The service: measures as its configuration says, uploads the lines, and tells the journal and the
// service manager what happens. Main thread.
class Recorder : public QObject
{
    Q_OBJECT

public:
    Recorder(
        const Configuration &configuration, QString configurationFile, QObject *parent = nullptr);
    ~Recorder() override;
    Q_DISABLE_COPY_MOVE(Recorder)

    void start();
    // Reads the configuration again. A wrong one is reported, and the old one stays in effect.
    void reload();
    // Returns false if a thread could not be ended; the process must then exit without returning
    // from main().
    bool end();

private:
    // Tests set the clock of the station.
    friend class RecorderProbe;

    void connectStation();
    void startUpload();
    void endUpload();
    void upload(const QVariantList &row);
    void reportStart() const;
    void lineBack(const QDateTime &since);
    void lineWritten();
    void lineNotWritten(const QDateTime &minute, const QString &cause);
    bool beginDay();
    void renewStatus();
    void aliveTick();
    [[nodiscard]] QString statusText() const;

    Configuration m_configuration;
    QString m_configurationFile;
    ServiceManager m_manager;
    std::unique_ptr<Station> m_station;
    std::unique_ptr<Uploader> m_uploader;
    std::unique_ptr<Uploader>
        m_endingUploader; // of the configuration before; m_uploader waits for it
    PortWatch m_portWatch;
    QTimer m_statusTimer;
    QTimer m_aliveTimer;
    QDate m_day; // of the following counts
    int m_linesToday = 0;
    int m_gapsToday = 0;
    int m_linesMissed = 0; // because of write errors since the last line
    int m_rowsMissed = 0;  // that could not be stored for the upload
    bool m_openReported = false;
    bool m_lineLost = false;
    bool m_healthReported = false;
};

} // namespace ork2
