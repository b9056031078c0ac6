// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "archivefolder.h"
#include "historyloader.h"
#include "watchkeeper.h"

#include <QMainWindow>
#include <QTimeZone>

class QActionGroup;
class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace ork2 {

class ArchiveChart;
class CountsTable;
class MonthCalendar;
class ReportPanel;
class WatchBanner;
enum class HeightScale;

enum class Period { Day, ThreeDays, Week, Month, Year };

// The main window. Reads the data folder in the loader's thread and never writes into it.
class ArchiveWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit ArchiveWindow(const QTimeZone &zone, QWidget *parent = nullptr);

    // Restores the last folder, range and scale. A folder on the command line takes precedence.
    void start(const QString &folder);
    void openFolder(const QString &path);
    void setPeriod(Period period);
    void showDate(QDate date); // the last day of the period
    void setFollowing(bool following);
    [[nodiscard]] bool isFollowing() const;
    // Saves the visible range as .csv, .pdf or else PNG. Waits for files that are being read.
    // Returns an error message, empty if the file was written or the user did not want to wait.
    [[nodiscard]] QString saveRange(const QString &fileName);

protected:
    void closeEvent(QCloseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void createWidgets();
    void createFileMenu();
    void createViewMenu();
    void createWatchMenu();
    void createHelpMenu();
    void createToolBar();
    void connectWidgets();
    QAction *addCommand(QMenu *menu, const QString &text, const QKeySequence &key,
        const std::function<void()> &command);
    void addScale(QMenu *menu, const QString &text, const QKeySequence &key, HeightScale scale);
    void addPeriod(QMenu *menu, const QString &text, const QKeySequence &key, Period period);

    void chooseFolder();
    void chooseFile();
    void printChart();
    [[nodiscard]] bool waitForFiles();
    void showProblems();
    void showJournal();
    void editWatch();
    void showKeys();

    void selectUnit(int unit);
    void movePeriod(int direction);
    void ensureLoaded();
    void updateHistory();
    void updateRange();
    void updateReadout(qint64 time);
    void updateSoon();
    void checkClock();
    void checkFolder();
    void showFolder(const ArchiveFolder &archive);
    void showMessage(const QString &text);
    void restartWatch();
    void saveSettings() const;
    [[nodiscard]] const Instrument *instrument() const;
    [[nodiscard]] QDate dateOf(qint64 time) const;
    [[nodiscard]] QDate lastVisibleDate() const;
    [[nodiscard]] QDate today() const;
    void showDates(QDate first, QDate last);

    QTimeZone m_zone;
    ArchiveFolder m_archive;
    HistoryLoader m_loader;
    WatchKeeper m_watch;
    Period m_period = Period::Day;
    int m_unit = -1;
    QDate m_loadedFirst; // of the running or last load
    QDate m_loadedLast;

    QComboBox *m_units = nullptr;
    MonthCalendar *m_calendar = nullptr;
    CountsTable *m_counts = nullptr;
    WatchBanner *m_banner = nullptr;
    QLabel *m_readout = nullptr;
    ArchiveChart *m_chart = nullptr;
    ReportPanel *m_report = nullptr;
    QLabel *m_message = nullptr;
    QPushButton *m_problems = nullptr;
    QTimer *m_updateTimer = nullptr;
    QTimer *m_clockTimer = nullptr;
    QActionGroup *m_periodActions = nullptr;
    QActionGroup *m_scaleActions = nullptr;
    QAction *m_followAction = nullptr;
    QAction *m_acknowledgeAction = nullptr;
};

inline constexpr int kUpdateDelayMs = 60; // counts follow a movement of the chart
inline constexpr int kClockMs = 5000;     // missing minutes and the report follow the clock

} // namespace ork2
