// SPDX-License-Identifier: GPL-3.0-or-later
#include "archivewindow.h"

#include "archivechart.h"
#include "archivesettings.h"
#include "countstable.h"
#include "monthcalendar.h"
#include "rangetexts.h"
#include "reportpanel.h"
#include "watchbanner.h"

#include <QActionGroup>
#include <QComboBox>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QVBoxLayout>

namespace ork2 {

namespace {

constexpr int kSideWidth = 310; // pixels
constexpr int kMarginDays = 31; // loaded on both sides of the visible range, at most
constexpr QSize kInitialSize(1180, 760);

QString journalPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation)
        + QStringLiteral("/КАСТОР/Архив ОРК-2/journal.tsv");
}

QString valueText(LayerValue value)
{
    if (value.isHeight()) {
        return QStringLiteral("%1 м").arg(value.number());
    }
    if (value.isNoCloud()) {
        return QStringLiteral("нет");
    }
    if (value.isUnreadable()) {
        return QStringLiteral("не читается");
    }
    switch (value.number()) {
    case kNoFlashCode:
        return QStringLiteral("7777, нет вспышки лампы");
    case kNotReadyCode:
        return QStringLiteral("8888, данные не готовы");
    default:
        return QStringLiteral("9999, ошибка данных");
    }
}

QString channelText(RecordChannel channel)
{
    switch (channel) {
    case RecordChannel::Main:
        return QStringLiteral("основной");
    case RecordChannel::Reserve:
        return QStringLiteral("резервный");
    case RecordChannel::Unknown:
        break;
    }
    return QStringLiteral("не читается");
}

// A long text is cut off and does not make the window wider than the screen.
void allowNarrow(QLabel *label)
{
    label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

// The values of both layers; a code of both is named once.
QString valuesText(const Sample &sample)
{
    if (sample.first.isCode() && sample.first == sample.second) {
        return QStringLiteral("оба слоя: <b>%1</b>").arg(valueText(sample.first));
    }
    return QStringLiteral("первый слой: <b>%1</b>&nbsp;&nbsp; второй слой: <b>%2</b>")
        .arg(valueText(sample.first), valueText(sample.second));
}

} // namespace

ArchiveWindow::ArchiveWindow(const QTimeZone &zone, QWidget *parent)
    : QMainWindow(parent)
    , m_zone(zone)
    , m_loader(zone, this)
    , m_watch(journalPath(), zone, this)
    , m_updateTimer(new QTimer(this))
    , m_clockTimer(new QTimer(this))
{
    setWindowTitle(QStringLiteral("Архив ОРК-2"));
    setAcceptDrops(true);
    setContextMenuPolicy(Qt::NoContextMenu);
    resize(kInitialSize.boundedTo(screen()->availableSize()));
    createWidgets();
    createFileMenu();
    createViewMenu();
    createWatchMenu();
    createHelpMenu();
    createToolBar();
    connectWidgets();
}

void ArchiveWindow::createWidgets()
{
    m_units = new QComboBox;
    m_units->setAccessibleName(QStringLiteral("Прибор"));
    m_calendar = new MonthCalendar;
    m_counts = new CountsTable;
    m_banner = new WatchBanner;
    m_readout = new QLabel;
    m_readout->setMargin(6);
    allowNarrow(m_readout);
    m_chart = new ArchiveChart(m_zone);
    m_report = new ReportPanel(m_zone);
    m_message = new QLabel;
    m_message->setTextFormat(Qt::PlainText);
    allowNarrow(m_message);
    m_problems = new QPushButton;
    m_problems->setFlat(true);
    m_problems->hide();
    statusBar()->addWidget(m_message, 1);
    statusBar()->addPermanentWidget(m_problems);
    auto *side = new QVBoxLayout;
    side->addWidget(m_units);
    side->addWidget(m_calendar);
    side->addWidget(m_counts, 1);
    auto *main = new QVBoxLayout;
    main->addWidget(m_banner);
    main->addWidget(m_readout);
    main->addWidget(m_chart, 1);
    main->addWidget(m_report);
    main->setSpacing(0);
    m_chart->setFocus();
    auto *sideWidget = new QWidget;
    sideWidget->setLayout(side);
    sideWidget->setFixedWidth(kSideWidth);
    side->setContentsMargins(8, 8, 4, 8);
    auto *row = new QHBoxLayout;
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sideWidget);
    row->addLayout(main, 1);
    auto *central = new QWidget;
    central->setLayout(row);
    setCentralWidget(central);
}

void ArchiveWindow::connectWidgets()
{
    m_updateTimer->setSingleShot(true);
    m_updateTimer->setInterval(kUpdateDelayMs);
    m_clockTimer->setInterval(kClockMs);
    connect(m_updateTimer, &QTimer::timeout, this, &ArchiveWindow::updateRange);
    connect(m_clockTimer, &QTimer::timeout, this, &ArchiveWindow::checkClock);
    connect(m_units, &QComboBox::activated, this,
        [this](int index) { selectUnit(m_units->itemData(index).toInt()); });
    connect(m_calendar, &QCalendarWidget::clicked, this, &ArchiveWindow::showDate);
    connect(m_calendar, &QCalendarWidget::activated, this, &ArchiveWindow::showDate);
    connect(m_chart, &ArchiveChart::rangeChanged, this, &ArchiveWindow::updateSoon);
    connect(m_chart, &ArchiveChart::draggedOrZoomed, this, [this] {
        setFollowing(false);
        if (QAction *period = m_periodActions->checkedAction()) {
            period->setChecked(false);
        }
    });
    connect(m_chart, &ArchiveChart::cursorMoved, this, &ArchiveWindow::updateReadout);
    connect(&m_loader, &HistoryLoader::loaded, this, [this] {
        updateHistory();
        restartWatch();
        m_watch.addNew(m_loader.history());
    });
    connect(&m_loader, &HistoryLoader::dayLoaded, this, [this] {
        updateHistory();
        m_watch.addNew(m_loader.history());
    });
    connect(m_report, &ReportPanel::copyRequested, m_report, &ReportPanel::copy);
    connect(m_problems, &QPushButton::clicked, this, &ArchiveWindow::showProblems);
    connect(m_banner, &WatchBanner::acknowledged, &m_watch, &WatchKeeper::acknowledge);
    connect(&m_watch, &WatchKeeper::alarmChanged, this, [this](const QString &text, bool silence) {
        m_acknowledgeAction->setEnabled(!text.isEmpty());
        if (text.isEmpty()) {
            m_banner->hide();
        } else {
            m_banner->show(text, silence);
        }
    });
    connect(&m_watch, &WatchKeeper::journalFailed, this, &ArchiveWindow::showMessage);
    connect(&m_watch, &WatchKeeper::notificationFailed, this, &ArchiveWindow::showMessage);
}

void ArchiveWindow::start(const QString &folder)
{
    const QSettings store = archiveSettings();
    restoreGeometry(store.value(kGeometryKey.toString()).toByteArray());
    const int scale = store.value(kScaleKey.toString()).toInt();
    if (scale > 0 && scale < m_scaleActions->actions().size()) {
        m_scaleActions->actions().at(scale)->trigger();
    }
    const QString stored = store.value(kFolderKey.toString()).toString();
    m_unit = store.value(kUnitKey.toString(), -1).toInt();
    const qint64 from = store.value(kFromKey.toString()).toLongLong();
    const qint64 to = store.value(kToKey.toString()).toLongLong();
    const bool following = store.value(kFollowKey.toString(), true).toBool();
    openFolder(!folder.isEmpty() ? folder : stored.isEmpty() ? terminalDataFolder() : stored);
    if (folder.isEmpty() && !following && from < to) {
        setFollowing(false);
        m_chart->setRange(from, to);
    }
    m_clockTimer->start();
}

void ArchiveWindow::showMessage(const QString &text)
{
    m_message->setText(text);
    m_message->setToolTip(text); // if it is cut off
}

void ArchiveWindow::showFolder(const ArchiveFolder &archive)
{
    const Instrument *chosen = archive.instrument(m_unit);
    const QString error = chosen != nullptr ? chosen->error : archive.error;
    showMessage(error.isEmpty() ? archive.path : error);
    m_calendar->setMarkedDays(chosen != nullptr ? chosen->days : QList<QDate>());
}

void ArchiveWindow::openFolder(const QString &path)
{
    m_archive = openArchiveFolder(path);
    m_units->clear();
    for (const Instrument &instrument : std::as_const(m_archive.instruments)) {
        m_units->addItem(QStringLiteral("ОРК-2 N%1").arg(instrument.unit), instrument.unit);
    }
    m_units->setEnabled(m_units->count() > 0);
    int unit = m_archive.preferredUnit >= 0 ? m_archive.preferredUnit : m_unit;
    if (m_archive.instrument(unit) == nullptr && !m_archive.instruments.isEmpty()) {
        unit = m_archive.instruments.first().unit;
    }
    selectUnit(unit);
    const Instrument *chosen = instrument();
    const bool hasToday =
        chosen == nullptr || chosen->days.isEmpty() || chosen->days.last() >= today();
    setFollowing(hasToday);
    if (!hasToday) {
        showDate(chosen->days.last());
    }
}

const Instrument *ArchiveWindow::instrument() const
{
    return m_archive.instrument(m_unit);
}

void ArchiveWindow::selectUnit(int unit)
{
    m_unit = unit;
    m_units->setCurrentIndex(m_units->findData(unit));
    showFolder(m_archive);
    m_watch.stop();
    m_loadedFirst = {};
    m_loadedLast = {};
    ensureLoaded();
    updateRange();
}

QDate ArchiveWindow::dateOf(qint64 time) const
{
    return QDateTime::fromSecsSinceEpoch(time, m_zone).date();
}

QDate ArchiveWindow::lastVisibleDate() const
{
    return dateOf(m_chart->to() - 1);
}

QDate ArchiveWindow::today() const
{
    return dateOf(QDateTime::currentSecsSinceEpoch());
}

void ArchiveWindow::showDates(QDate first, QDate last)
{
    m_chart->setRange(first.startOfDay(m_zone).toSecsSinceEpoch(),
        last.addDays(1).startOfDay(m_zone).toSecsSinceEpoch());
}

void ArchiveWindow::setPeriod(Period period)
{
    const QDate date = isFollowing() ? today() : lastVisibleDate();
    const bool following = isFollowing();
    m_period = period;
    showDate(date);
    setFollowing(following);
}

void ArchiveWindow::showDate(QDate date)
{
    setFollowing(false);
    m_periodActions->actions().at(static_cast<int>(m_period))->setChecked(true);
    const QDate month(date.year(), date.month(), 1);
    switch (m_period) {
    case Period::Day:
        return showDates(date, date);
    case Period::ThreeDays:
        return showDates(date.addDays(-2), date);
    case Period::Week:
        return showDates(date.addDays(-6), date);
    case Period::Month:
        return showDates(month, month.addMonths(1).addDays(-1));
    case Period::Year:
        return showDates(QDate(date.year(), 1, 1), QDate(date.year(), 12, 31));
    }
}

void ArchiveWindow::movePeriod(int direction)
{
    const QDate last = lastVisibleDate();
    switch (m_period) {
    case Period::Day:
        return showDate(last.addDays(direction));
    case Period::ThreeDays:
        return showDate(last.addDays(qint64{3} * direction));
    case Period::Week:
        return showDate(last.addDays(qint64{7} * direction));
    case Period::Month:
        return showDate(last.addMonths(direction));
    case Period::Year:
        return showDate(last.addYears(direction));
    }
}

bool ArchiveWindow::isFollowing() const
{
    return m_followAction->isChecked();
}

void ArchiveWindow::setFollowing(bool following)
{
    if (following) {
        m_followAction->setChecked(false);
        showDate(today());
    }
    m_followAction->setChecked(following);
    restartWatch();
}

void ArchiveWindow::restartWatch()
{
    const WatchSettings settings = storedWatchSettings();
    const bool needed =
        settings.enabled && isFollowing() && instrument() != nullptr && !m_loader.isLoading();
    if (needed && !m_watch.isRunning()) {
        m_watch.start(settings, m_unit, m_loader.history());
    } else if (!settings.enabled) {
        m_watch.stop();
    }
}

void ArchiveWindow::ensureLoaded()
{
    const Instrument *chosen = instrument();
    if (chosen == nullptr) {
        return;
    }
    const QDate first = dateOf(m_chart->from());
    const QDate last = std::max(lastVisibleDate(), isFollowing() ? today() : QDate());
    if (m_loadedFirst.isValid() && first >= m_loadedFirst && last <= m_loadedLast) {
        return;
    }
    const qint64 margin = std::clamp<qint64>(first.daysTo(last) + 1, 2, kMarginDays);
    m_loadedFirst = first.addDays(-margin);
    m_loadedLast = last.addDays(margin);
    m_loader.load(*chosen, m_loadedFirst, m_loadedLast);
}

void ArchiveWindow::updateHistory()
{
    m_chart->setNow(QDateTime::currentSecsSinceEpoch());
    m_chart->setHistory(m_loader.history());
    const qint64 problems = m_loader.history().problemCount();
    m_problems->setVisible(problems > 0);
    m_problems->setText(QStringLiteral("Замечания к файлам: %1").arg(problems));
    updateSoon();
}

void ArchiveWindow::updateSoon()
{
    ensureLoaded();
    if (!m_updateTimer->isActive()) {
        m_updateTimer->start();
    }
}

void ArchiveWindow::updateRange()
{
    const qint64 now = QDateTime::currentSecsSinceEpoch();
    const History &history = m_loader.history();
    m_counts->show(countMinutes(history, m_chart->from(), m_chart->to(), now));
    m_report->show(reportTenMinutes(history, std::min(now, m_chart->to() - 1)));
    const QDate first = dateOf(m_chart->from());
    const QDate last = lastVisibleDate();
    m_chart->setTitle(instrument() != nullptr ? chartTitle(m_unit, first, last) : QString());
    const QDate selected = std::max(first, std::min(last, today()));
    if (m_calendar->selectedDate() != selected) {
        m_calendar->setSelectedDate(selected);
    }
    updateReadout(m_chart->cursorTime());
}

void ArchiveWindow::updateReadout(qint64 time)
{
    if (time == 0) {
        m_readout->setText(
            QStringLiteral("Значения под курсором: наведите мышь на график или нажмите ← и →"));
        return;
    }
    const History &history = m_loader.history();
    const Sample *sample = history.nearest(time);
    const qint64 step = std::max<qint64>(
        kSecondsPerMinute, (m_chart->to() - m_chart->from()) / std::max(1, m_chart->width()));
    const bool near = sample != nullptr && std::abs(sample->time - time) <= step;
    const QString timeText = QDateTime::fromSecsSinceEpoch(near ? sample->time : time, m_zone)
                                 .toString(QStringLiteral("dd.MM.yyyy hh:mm"));
    m_readout->setText(near
            ? QStringLiteral("<b>%1</b>&nbsp;&nbsp; %2&nbsp;&nbsp; канал: <b>%3</b>")
                  .arg(timeText, valuesText(*sample), channelText(sample->channel))
            : QStringLiteral("<b>%1</b>&nbsp;&nbsp; данных нет").arg(timeText));
}

void ArchiveWindow::checkClock()
{
    m_chart->setNow(QDateTime::currentSecsSinceEpoch());
    checkFolder();
    if (isFollowing() && lastVisibleDate() < today()) {
        setFollowing(true);
    }
    m_chart->replot(QCustomPlot::rpQueuedReplot);
    updateSoon();
}

// A folder may disappear, for example that of another computer, and come back with new days.
void ArchiveWindow::checkFolder()
{
    const bool hasNewDay = instrument() != nullptr && !instrument()->days.contains(today())
        && m_loader.history().day(today()) != nullptr;
    if (m_archive.error.isEmpty() && !hasNewDay && QFileInfo(m_archive.path).isDir()) {
        return;
    }
    const ArchiveFolder archive = openArchiveFolder(m_archive.path);
    if (instrument() == nullptr && !archive.instruments.isEmpty()) {
        openFolder(archive.path);
    } else if (archive.error.isEmpty()) {
        m_archive = archive;
        showFolder(archive);
    } else {
        m_archive.error = archive.error; // what has been read is still shown
        showMessage(archive.error);
    }
}

void ArchiveWindow::saveSettings() const
{
    QSettings store = archiveSettings();
    store.setValue(kGeometryKey.toString(), saveGeometry());
    store.setValue(kUnitKey.toString(), m_unit);
    store.setValue(kFromKey.toString(), m_chart->from());
    store.setValue(kToKey.toString(), m_chart->to());
    store.setValue(kFollowKey.toString(), isFollowing());
    store.setValue(kScaleKey.toString(), static_cast<int>(m_chart->scale()));
}

void ArchiveWindow::closeEvent(QCloseEvent *event)
{
    saveSettings();
    QMainWindow::closeEvent(event);
}

void ArchiveWindow::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls() && event->mimeData()->urls().first().isLocalFile()) {
        event->acceptProposedAction();
    }
}

void ArchiveWindow::dropEvent(QDropEvent *event)
{
    const QFileInfo dropped(event->mimeData()->urls().first().toLocalFile());
    openFolder(dropped.isDir() ? dropped.filePath() : dropped.path());
}

} // namespace ork2
