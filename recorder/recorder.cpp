// SPDX-License-Identifier: GPL-3.0-or-later
#include "recorder.h"

#include "dayfileformat.h"
#include "dayfilerecords.h"
#include "durationtext.h"
#include "frames.h"
#include "journal.h"
#include "uploader.h"

#include <utility>

namespace ork2 {

namespace {

using journal::Priority;

constexpr int kMsPerSecond = 1000;

} // namespace

Recorder::Recorder(const Configuration &configuration, QString configurationFile, QObject *parent)
    : QObject(parent)
    , m_configuration(configuration)
    , m_configurationFile(std::move(configurationFile))
    , m_station(std::make_unique<Station>(configuration.port, configuration.place))
{
    connectStation();
    connect(&m_portWatch, &PortWatch::appeared, m_station.get(), &Station::openNow);
    connect(&m_statusTimer, &QTimer::timeout, this, &Recorder::renewStatus);
    connect(&m_aliveTimer, &QTimer::timeout, this, &Recorder::aliveTick);
}

Recorder::~Recorder() = default;

void Recorder::connectStation()
{
    Station *station = m_station.get();
    connect(station, &Station::portOpened, this, [this](const QString &device) {
        if (!m_openReported) {
            m_openReported = true;
            journal::write(
                Priority::Info, QStringLiteral("Порт открыт: %1. Жду измерений.").arg(device));
        }
    });
    connect(station, &Station::lineLost, this, [this](const QString &cause) {
        beginDay();
        ++m_gapsToday;
        m_lineLost = true;
        journal::write(Priority::Error,
            QStringLiteral("Измерений нет: %1. Порт закрыт, буду открывать его снова.").arg(cause));
        renewStatus();
    });
    connect(station, &Station::lineBack, this, &Recorder::lineBack);
    connect(station, &Station::lineWritten, this, &Recorder::lineWritten);
    connect(station, &Station::lineNotWritten, this, &Recorder::lineNotWritten);
}

void Recorder::start()
{
    reportStart();
    beginDay();
    if (m_configuration.upload) {
        startUpload();
    }
    m_portWatch.watch(m_configuration.port);
    m_station->start();
    m_statusTimer.start(kStatusIntervalMs);
    if (m_manager.aliveIntervalSeconds() > 0) {
        m_aliveTimer.start(m_manager.aliveIntervalSeconds() * kMsPerSecond);
    }
    m_manager.ready();
    renewStatus();
}

void Recorder::reportStart() const
{
    journal::write(Priority::Info,
        QStringLiteral("Работаю: порт %1, файлы в папке %2, передача на сервер %3.")
            .arg(m_configuration.port, dayFileFolder(m_configuration.place),
                m_configuration.upload ? QStringLiteral("включена") : QStringLiteral("выключена")));
}

void Recorder::startUpload()
{
    m_uploader =
        std::make_unique<Uploader>(m_configuration.server, uploadStorePath(m_configuration));
    connect(m_uploader.get(), &Uploader::stopped, this, [](const QString &cause, qint64 waiting) {
        journal::write(Priority::Error,
            QStringLiteral("Передача на сервер остановилась: %1. Ждут на диске: %2.")
                .arg(cause)
                .arg(waiting));
    });
    connect(m_uploader.get(), &Uploader::resumed, this, [](qint64 sent) {
        journal::write(Priority::Notice,
            QStringLiteral("Передача на сервер возобновилась, отправлено: %1.").arg(sent));
    });
    if (!m_uploader->openStore()) {
        journal::write(Priority::Error,
            QStringLiteral("Файл очереди на сервер %1 не открывается: %2.")
                .arg(uploadStorePath(m_configuration), m_uploader->error()));
    }
    if (!m_uploader->movedAside().isEmpty()) {
        journal::write(Priority::Error,
            QStringLiteral("Файл очереди на сервер был повреждён и переименован в %1.")
                .arg(m_uploader->movedAside()));
    }
    m_station->setUploadTarget([this](const QVariantList &row) { upload(row); });
    if (!m_endingUploader) {
        m_uploader->startSending();
    }
}

// Does not wait for the server: minutes are due meanwhile. The next uploader stores their rows, and
// starts to send when this one has ended.
void Recorder::endUpload()
{
    m_station->setUploadTarget({});
    if (!m_uploader || m_endingUploader) {
        m_uploader.reset(); // has not started to send
        return;
    }
    m_endingUploader = std::move(m_uploader);
    disconnect(m_endingUploader.get(), nullptr, this, nullptr);
    connect(m_endingUploader.get(), &Uploader::ended, this, [this] {
        m_endingUploader.release()->deleteLater();
        if (m_uploader) {
            m_uploader->startSending();
        }
    });
    m_endingUploader->endSoon();
}

void Recorder::upload(const QVariantList &row)
{
    if (m_uploader->add(row)) {
        m_rowsMissed = 0;
    } else if (++m_rowsMissed == 1) {
        journal::write(Priority::Error,
            QStringLiteral("Строка не встала в очередь на сервер: %1.").arg(m_uploader->error()));
    }
}

void Recorder::reload()
{
    m_manager.reloading();
    const ConfigurationResult result = readConfiguration(m_configurationFile);
    if (!result.configuration) {
        journal::write(
            Priority::Error, QStringLiteral("Настройки остались прежними. %1").arg(result.error));
        m_manager.ready();
        return;
    }
    const Configuration old = std::exchange(m_configuration, *result.configuration);
    reportStart();
    if (old.port != m_configuration.port) {
        m_openReported = false;
        m_portWatch.watch(m_configuration.port);
        m_station->setPort(m_configuration.port);
    }
    if (old.place != m_configuration.place) {
        m_station->setPlace(m_configuration.place);
        m_day = {};
        beginDay();
    }
    const bool sameUpload = old.upload == m_configuration.upload
        && old.server == m_configuration.server
        && uploadStorePath(old) == uploadStorePath(m_configuration);
    if (!sameUpload) {
        endUpload();
        if (m_configuration.upload) {
            startUpload();
        }
    }
    m_manager.ready();
    renewStatus();
}

bool Recorder::end()
{
    m_manager.stopping();
    m_statusTimer.stop();
    m_aliveTimer.stop();
    const bool ended = m_station->end();
    m_station->setUploadTarget({});
    m_uploader.reset();
    m_endingUploader.reset();
    journal::write(Priority::Info, QStringLiteral("Работа закончена."));
    return ended;
}

void Recorder::lineBack(const QDateTime &since)
{
    const qint64 seconds = since.secsTo(m_station->lastReading()->at);
    const bool wasLost = std::exchange(m_lineLost, false);
    journal::write(wasLost ? Priority::Notice : Priority::Info,
        wasLost ? QStringLiteral("Измерения снова идут. Перерыв %1, с %2.")
                      .arg(durationText(seconds), since.toString(u"dd.MM.yyyy hh:mm:ss"))
                : QStringLiteral("Измерения идут."));
    renewStatus();
}

void Recorder::lineWritten()
{
    if (!beginDay()) { // otherwise this line has been counted in the file
        ++m_linesToday;
    }
    if (m_linesMissed > 0) {
        journal::write(Priority::Notice,
            QStringLiteral("Строки снова пишутся в файл. Не записано строк: %1.")
                .arg(m_linesMissed));
        m_linesMissed = 0;
    }
}

void Recorder::lineNotWritten(const QDateTime &minute, const QString &cause)
{
    if (++m_linesMissed == 1) {
        journal::write(Priority::Error,
            QStringLiteral("Строка за %1 не записана в папку %2: %3.")
                .arg(minute.toString(u"hh:mm"), dayFileFolder(m_configuration.place), cause));
    }
    renewStatus();
}

// Starts the counts again if the date has changed; the file of the day may already have lines.
// Returns whether it has.
bool Recorder::beginDay()
{
    const QDate today = QDate::currentDate();
    if (m_day == today) {
        return false;
    }
    m_day = today;
    m_gapsToday = 0;
    m_linesToday = recordsInDayFile(dayFileFolder(m_configuration.place)
        + today.toString(u"yyyy.MM.dd") + QStringLiteral(".txt"));
    return true;
}

QString Recorder::statusText() const
{
    const auto &last = m_station->lastReading();
    QString text = QStringLiteral("Измерений ещё не было");
    if (last) {
        const auto shown = [](const QString &height) {
            return height == kNoValueText ? kNoValueDashes.toString() : height;
        };
        text = QStringLiteral("Последнее измерение: %1 и %2, канал %3, %4 назад")
                   .arg(shown(last->first), shown(last->second),
                       channelOf(last->channel) == Channel::Main ? kMainChannelName.toString()
                                                                 : kReserveChannelName.toString(),
                       durationText(last->at.secsTo(QDateTime::currentDateTime())));
    }
    text +=
        QStringLiteral(". За сегодня строк %1, перерывов %2").arg(m_linesToday).arg(m_gapsToday);
    if (!m_station->trouble().isEmpty()) {
        text += QStringLiteral(". Сейчас %1").arg(m_station->trouble());
    }
    if (m_linesMissed > 0) {
        text += QStringLiteral(". Файл не пишется, пропущено строк: %1").arg(m_linesMissed);
    }
    return text + u'.';
}

void Recorder::renewStatus()
{
    beginDay();
    m_manager.status(statusText());
}

// Without these messages, the service manager restarts the service.
void Recorder::aliveTick()
{
    if (m_station->isHealthy()) {
        m_healthReported = false;
        m_manager.alive();
    } else if (!m_healthReported) {
        m_healthReported = true;
        journal::write(Priority::Error,
            QStringLiteral("Порт или диск не отвечает: жду, что система перезапустит службу."));
    }
}

} // namespace ork2
