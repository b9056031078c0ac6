// SPDX-License-Identifier: GPL-3.0-or-later
// The window with a folder of day files. If ORK2_SCREENSHOTS is set to a folder, the screenshots of
// the manual are saved there.
#include "alarmcall.h"
#include "archivechart.h"
#include "archivesettings.h"
#include "archivewindow.h"
#include "countstable.h"
#include "monthcalendar.h"
#include "samples.h"
#include "timeout.h"
#include "watchbanner.h"
#include "watchdialog.h"

#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <cmath>

using namespace ork2;

namespace {

// Three days with two layers, a clear night, a gap, codes and the reserve channel.
QByteArray dayText(int day)
{
    QByteArray text;
    for (int minute = 0; minute < 1440; ++minute) {
        const int at = day * 1440 + minute;
        if (at % 1900 > 1820) {
            continue;
        }
        QByteArray first = "----";
        QByteArray second = "----";
        if (at % 2300 > 2100) {
            first = second = "7777";
        } else if (at % 1700 < 1300) {
            const double wave =
                std::sin(at / 230.0) + 0.3 * std::sin(at / 31.0) + 0.06 * std::sin(at * 1.7);
            first = QByteArray::number(int(420 + 280 * wave)).rightJustified(4, '0');
            second = at % 900 < 600
                ? QByteArray::number(int(1500 + 420 * wave + 40 * std::sin(at * 0.9)))
                      .rightJustified(4, '0')
                : "----";
        }
        text += "\r\n" + QTime(0, 0).addSecs(minute * 60).toString().toLatin1() + '\t' + first
            + '\t' + second + '\t' + (at % 2600 > 2000 ? "Резерв" : "Основной");
    }
    return text;
}

QDate today()
{
    return QDateTime::currentDateTime().toTimeZone(samples::moscow()).date();
}

} // namespace

class tst_archivewindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void folder_isOpened();
    void wrongFolder_isReported();
    void period_setsTheRange();
    void keys_moveCursorAndRange();
    void logScale_separatesLowHeights();
    void counts_areThoseOfTheRange();
    void today_isFollowed();
    void movement_endsFollowing();
    void watch_showsBannerUntilAcknowledged();
    void watch_isOffByDefault();
    void settings_areRemembered();
    void thresholds_areParsed();
    void widgets_haveAccessibleNames();
    void dataFolder_isNotWritten();
    void saving_waitsForTheFiles();
    void saving_inAMissingFolder_isReported();
    void droppedFolder_isOpened();
    void folderThatAppears_isOpened();
    void missingNotificationService_isReported();
    void screenshots();

private:
    void open(ArchiveWindow &window, const QString &folder = {}) const;
    void write(QDate date, const QByteArray &text) const
    {
        samples::write(m_folder->filePath(QStringLiteral("ORK-2 N17/%1.txt")
                                              .arg(date.toString(QStringLiteral("yyyy.MM.dd")))),
            text);
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_archivewindow::initTestCase()
{
    QVERIFY2(qEnvironmentVariableIsSet("XDG_CONFIG_HOME"), "start this test with ctest");
    QStandardPaths::setTestModeEnabled(true);
}

void tst_archivewindow::init()
{
    archiveSettings().clear();
    m_folder = std::make_unique<QTemporaryDir>();
    for (int day = 0; day < 3; ++day) {
        write(QDate(2026, 11, 18 + day), dayText(day));
    }
}

void tst_archivewindow::open(ArchiveWindow &window, const QString &folder) const
{
    QSignalSpy loaded(window.findChild<HistoryLoader *>(), &HistoryLoader::loaded);
    window.start(folder.isEmpty() ? m_folder->path() : folder);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY_WITH_TIMEOUT(!window.findChild<HistoryLoader *>()->isLoading(), kTimeoutMs);
}

void tst_archivewindow::folder_isOpened()
{
    ArchiveWindow window(samples::moscow());
    open(window);
    QCOMPARE(window.windowTitle(), QStringLiteral("Архив ОРК-2"));
    QCOMPARE(window.findChild<QComboBox *>()->currentText(), QStringLiteral("ОРК-2 N17"));
    QVERIFY(!window.isFollowing());
    const auto *chart = window.findChild<ArchiveChart *>();
    QCOMPARE(chart->history().days().size(), 3U);
    QCOMPARE(chart->from(), QDate(2026, 11, 20).startOfDay(samples::moscow()).toSecsSinceEpoch());
    // The widgets follow the range with a delay.
    QTRY_COMPARE_WITH_TIMEOUT(
        window.findChild<MonthCalendar *>()->selectedDate(), QDate(2026, 11, 20), kTimeoutMs);
}

void tst_archivewindow::wrongFolder_isReported()
{
    ArchiveWindow window(samples::moscow());
    open(window, QStringLiteral("/nowhere"));
    bool reported = false;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        reported = reported || label->text().contains(QStringLiteral("Папки «/nowhere» нет."));
    }
    QVERIFY(reported);
}

void tst_archivewindow::period_setsTheRange()
{
    ArchiveWindow window(samples::moscow());
    open(window);
    const auto *chart = window.findChild<ArchiveChart *>();
    window.setPeriod(Period::ThreeDays);
    QCOMPARE(chart->to() - chart->from(), 3 * kSecondsPerDay);
    window.setPeriod(Period::Month);
    QCOMPARE(chart->to() - chart->from(), 30 * kSecondsPerDay);
    window.setPeriod(Period::Year);
    QCOMPARE(chart->to() - chart->from(), 365 * kSecondsPerDay);
    window.setPeriod(Period::Week);
    window.showDate(QDate(2026, 11, 20));
    QCOMPARE(chart->from(), QDate(2026, 11, 14).startOfDay(samples::moscow()).toSecsSinceEpoch());
}

void tst_archivewindow::keys_moveCursorAndRange()
{
    ArchiveWindow window(samples::moscow());
    open(window);
    auto *chart = window.findChild<ArchiveChart *>();
    QTest::keyClick(chart, Qt::Key_Home);
    QCOMPARE(chart->cursorTime(), chart->from());
    const qint64 start = chart->cursorTime();
    QTest::keyClick(chart, Qt::Key_Right);
    QVERIFY(chart->cursorTime() > start);
    const qint64 from = chart->from();
    QTest::keyClick(chart, Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(chart->from(), from + kSecondsPerDay / 4);
    QTest::keyClick(chart, Qt::Key_Plus);
    QCOMPARE(chart->to() - chart->from(), kSecondsPerDay * 2 / 3);
}

void tst_archivewindow::logScale_separatesLowHeights()
{
    ArchiveWindow window(samples::moscow());
    open(window);
    auto *chart = window.findChild<ArchiveChart *>();
    chart->setScale(HeightScale::Logarithmic);
    const QCPAxis *axis = chart->axisRect(0)->axis(QCPAxis::atLeft);
    QVERIFY(axis->coordToPixel(60) - axis->coordToPixel(120) > 30);
    chart->setScale(HeightScale::Usual);
    QCOMPARE(axis->range().upper, 3000.0);
    QCOMPARE(axis->range().lower, 0.0);
}

void tst_archivewindow::counts_areThoseOfTheRange()
{
    write(
        QDate(2026, 11, 20), "\r\n10:00:00\t0055\t0900\tОсновной\r\n10:01:00\t0065\t----\tРезерв");
    ArchiveWindow window(samples::moscow());
    open(window);
    const auto *table = window.findChild<CountsTable *>();
    QTRY_COMPARE_WITH_TIMEOUT(table->item(0, 1)->text(), QStringLiteral("55"), kTimeoutMs);
    QCOMPARE(table->item(0, 2)->text(), QStringLiteral("900"));
    QCOMPARE(table->item(2, 1)->text(), QStringLiteral("65"));
    QCOMPARE(table->item(3, 1)->text(), QStringLiteral("1 мин"));
    QCOMPARE(table->item(4, 1)->text(), QStringLiteral("2 мин"));
}

void tst_archivewindow::today_isFollowed()
{
    write(today(), "\r\n00:00:00\t0500\t----\tОсновной");
    ArchiveWindow window(samples::moscow());
    open(window);
    QVERIFY(window.isFollowing());
    const auto *chart = window.findChild<ArchiveChart *>();
    QTRY_VERIFY_WITH_TIMEOUT(chart->history().day(today()) != nullptr, kTimeoutMs);
    write(today(), "\r\n00:00:00\t0500\t----\tОсновной\r\n00:01:00\t0510\t----\tОсновной");
    QTRY_COMPARE_WITH_TIMEOUT(chart->history().day(today())->samples.size(), 2U, kTimeoutMs);
}

void tst_archivewindow::movement_endsFollowing()
{
    write(today(), "\r\n00:00:00\t0500\t----\tОсновной");
    ArchiveWindow window(samples::moscow());
    open(window);
    window.findChild<ArchiveChart *>()->pan(-1);
    QVERIFY(!window.isFollowing());
    window.setFollowing(true);
    QVERIFY(window.isFollowing());
}

void tst_archivewindow::watch_showsBannerUntilAcknowledged()
{
    const QDateTime now = QDateTime::currentDateTime().toTimeZone(samples::moscow());
    if (now.time().hour() == 23 && now.time().minute() > 57) {
        QSKIP("midnight");
    }
    storeWatchSettings({true, {200, 100}, 30});
    const QByteArray time = now.time().toString().toLatin1();
    write(today(), "\r\n" + time + "\t0150\t----\tОсновной");
    ArchiveWindow window(samples::moscow());
    open(window);
    auto *banner = window.findChild<WatchBanner *>();
    QTRY_VERIFY_WITH_TIMEOUT(banner->isVisible(), kTimeoutMs);
    QCOMPARE(banner->text(),
        QStringLiteral("С %1: Облака ниже 200 м: высота 150 м")
            .arg(now.time().toString(QStringLiteral("hh:mm"))));
    QTest::mouseClick(banner->findChild<QPushButton *>(), Qt::LeftButton);
    QVERIFY(!banner->isVisible());
    const QList<JournalEntry> entries = window.findChild<WatchKeeper *>()->journal().last(2);
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries[0].event.kind, WatchEvent::Kind::Acknowledged);
    QCOMPARE(entries[1].event.threshold, 200);
}

void tst_archivewindow::watch_isOffByDefault()
{
    QVERIFY(!storedWatchSettings().enabled);
    write(today(), "\r\n00:00:00\t0010\t----\tОсновной");
    ArchiveWindow window(samples::moscow());
    open(window);
    QVERIFY(!window.findChild<WatchKeeper *>()->isRunning());
}

void tst_archivewindow::settings_areRemembered()
{
    qint64 from = 0;
    {
        ArchiveWindow window(samples::moscow());
        open(window);
        window.setPeriod(Period::ThreeDays);
        window.findChild<ArchiveChart *>()->setScale(HeightScale::Logarithmic);
        from = window.findChild<ArchiveChart *>()->from();
        window.close();
    }
    archiveSettings().setValue(kFolderKey.toString(), m_folder->path());
    ArchiveWindow window(samples::moscow());
    window.start({});
    QCOMPARE(window.findChild<ArchiveChart *>()->from(), from);
    QCOMPARE(window.findChild<ArchiveChart *>()->scale(), HeightScale::Logarithmic);
}

void tst_archivewindow::thresholds_areParsed()
{
    QCOMPARE(thresholdsOf(QStringLiteral("60; 200,100 60")), QList<int>({200, 100, 60}));
    QVERIFY(thresholdsOf(QStringLiteral("60, x")).isEmpty());
    QVERIFY(thresholdsOf(QStringLiteral("0")).isEmpty());
    QVERIFY(thresholdsOf(QStringLiteral("3001")).isEmpty());
}

void tst_archivewindow::widgets_haveAccessibleNames()
{
    ArchiveWindow window(samples::moscow());
    for (const QWidget *widget : {static_cast<QWidget *>(window.findChild<ArchiveChart *>()),
             static_cast<QWidget *>(window.findChild<MonthCalendar *>()),
             static_cast<QWidget *>(window.findChild<CountsTable *>()),
             static_cast<QWidget *>(window.findChild<QComboBox *>())}) {
        QVERIFY(!widget->accessibleName().isEmpty());
    }
}

void tst_archivewindow::dataFolder_isNotWritten()
{
    const QDir folder(m_folder->filePath(QStringLiteral("ORK-2 N17")));
    const auto listing = [&] {
        QStringList entries;
        for (const QFileInfo &info : folder.entryInfoList(QDir::AllEntries | QDir::Hidden)) {
            entries += info.fileName() + info.lastModified().toString(Qt::ISODateWithMs);
        }
        return entries;
    };
    const QStringList before = listing();
    ArchiveWindow window(samples::moscow());
    open(window);
    window.setPeriod(Period::Year);
    window.close();
    QCOMPARE(listing(), before);
}

void tst_archivewindow::saving_waitsForTheFiles()
{
    write(QDate(2026, 11, 2), "\r\n10:00:00\t0055\t0900\tОсновной");
    ArchiveWindow window(samples::moscow());
    open(window);
    const QTemporaryDir target;
    const QString name = target.filePath(QStringLiteral("month.csv"));
    window.setPeriod(Period::Month);
    QVERIFY(window.findChild<HistoryLoader *>()->isLoading());
    QCOMPARE(window.saveRange(name), QString());
    QFile file(name);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(file.readAll().contains("\r\n2026-11-02T10:00:00+03:00,55,900,Основной,\r\n"));
}

void tst_archivewindow::saving_inAMissingFolder_isReported()
{
    ArchiveWindow window(samples::moscow());
    open(window);
    for (const char *name : {"/nowhere/a.csv", "/nowhere/a.pdf", "/nowhere/a.png"}) {
        QVERIFY(!window.saveRange(QString::fromLatin1(name)).isEmpty());
    }
}

void tst_archivewindow::droppedFolder_isOpened()
{
    ArchiveWindow window(samples::moscow());
    open(window, QStringLiteral("/nowhere"));
    const auto drop = [&](const QUrl &url) {
        QMimeData data;
        data.setUrls({url});
        QDragEnterEvent enter({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &enter);
        if (!enter.isAccepted()) {
            return false;
        }
        QDropEvent event({5, 5}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &event);
        return true;
    };
    const auto *units = window.findChild<QComboBox *>();
    QVERIFY(!drop(QUrl(QStringLiteral("https://example.org/Data"))));
    QCOMPARE(units->count(), 0);
    QVERIFY(drop(QUrl::fromLocalFile(m_folder->path())));
    QCOMPARE(units->currentText(), QStringLiteral("ОРК-2 N17"));
    window.openFolder(QStringLiteral("/nowhere"));
    QCOMPARE(units->count(), 0);
    const QString file = m_folder->filePath(QStringLiteral("ORK-2 N17/2026.11.18.txt"));
    QVERIFY(drop(QUrl::fromLocalFile(file)));
    QCOMPARE(units->currentText(), QStringLiteral("ОРК-2 N17"));
}

// For example that of another computer that has just been started.
void tst_archivewindow::folderThatAppears_isOpened()
{
    const QString path = m_folder->filePath(QStringLiteral("later"));
    ArchiveWindow window(samples::moscow());
    open(window, path);
    const auto *units = window.findChild<QComboBox *>();
    QCOMPARE(units->count(), 0);
    samples::write(
        path + QStringLiteral("/ORK-2 N5/2026.11.20.txt"), "\r\n10:00:00\t0055\t0900\tОсновной");
    QTRY_COMPARE_WITH_TIMEOUT(units->currentText(), QStringLiteral("ОРК-2 N5"), kTimeoutMs);
    QVERIFY(QDir().rename(path, path + u'2'));
    const auto isShown = [&](const QString &text) {
        const QList<QLabel *> labels = window.findChildren<QLabel *>();
        return std::any_of(labels.begin(), labels.end(),
            [&](const QLabel *label) { return label->text() == text; });
    };
    QTRY_VERIFY_WITH_TIMEOUT(isShown(QStringLiteral("Папки «%1» нет.").arg(path)), kTimeoutMs);
    QCOMPARE(units->currentText(), QStringLiteral("ОРК-2 N5"));
    QVERIFY(QDir().rename(path + u'2', path));
    QTRY_VERIFY_WITH_TIMEOUT(isShown(path), kTimeoutMs);
}

void tst_archivewindow::missingNotificationService_isReported()
{
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nowhere");
    AlarmCall call;
    QSignalSpy failed(&call, &AlarmCall::notificationFailed);
    call.start(QStringLiteral("ОРК-2 N17"), QStringLiteral("Проверка"));
    QTRY_COMPARE_WITH_TIMEOUT(failed.size(), 1, kTimeoutMs);
    QVERIFY(call.isActive()); // the sound
}

void tst_archivewindow::screenshots()
{
    if (!qEnvironmentVariableIsSet("ORK2_SCREENSHOTS")) {
        QSKIP("ORK2_SCREENSHOTS is not set");
    }
    const QDir target(qEnvironmentVariable("ORK2_SCREENSHOTS"));
    ArchiveWindow window(samples::moscow());
    open(window);
    window.setPeriod(Period::ThreeDays);
    auto *chart = window.findChild<ArchiveChart *>();
    chart->setFocus();
    for (int i = 0; i < 60; ++i) {
        QTest::keyClick(chart, Qt::Key_Left);
    }
    for (QLabel *label : window.findChildren<QLabel *>()) {
        if (label->text() == m_folder->path()) {
            label->setText(QStringLiteral("/opt/ork2-terminal/Data"));
        }
    }
    QTest::qWait(300); // the counts follow the range with a delay
    QVERIFY(window.grab().save(target.filePath(QStringLiteral("archive.png"))));
    chart->setScale(HeightScale::Logarithmic);
    chart->replot();
    QVERIFY(chart->grab().save(target.filePath(QStringLiteral("archive-log.png"))));
    window.findChild<WatchBanner *>()->show(
        QStringLiteral("С 08:15: Облака ниже 200 м: высота 180 м"), false);
    QVERIFY(window.findChild<WatchBanner *>()->grab().save(
        target.filePath(QStringLiteral("archive-banner.png"))));
    WatchDialog dialog(storedWatchSettings());
    dialog.show();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QVERIFY(dialog.grab().save(target.filePath(QStringLiteral("archive-watch.png"))));
}

QTEST_MAIN(tst_archivewindow)
#include "tst_archivewindow.moc"
