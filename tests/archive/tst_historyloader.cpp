// SPDX-License-Identifier: GPL-3.0-or-later
#include "historyloader.h"
#include "samples.h"
#include "timeout.h"

#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <atomic>
#include <thread>

using namespace ork2;

class tst_historyloader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void load_readsTheDaysOfTheRange();
    void load_again_readsOnlyChangedFiles();
    void newLoad_replacesARunningOne();
    void vanishedFile_isAProblem();
    void unreadFile_isReadWhenItCanBe();
    void today_isReadWhenItGrows();
    void yesterday_isReadWhenItGrows();
    void changesWhileReading_areSurvived();

private:
    void add(QDate date, const QByteArray &text);
    void load(HistoryLoader &loader, QDate first, QDate last) const;

    std::unique_ptr<QTemporaryDir> m_folder;
    Instrument m_instrument;
};

void tst_historyloader::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_instrument = {17, m_folder->path() + u'/', {}, {}};
}

void tst_historyloader::add(QDate date, const QByteArray &text)
{
    samples::write(m_instrument.dayFile(date), text);
    if (!m_instrument.days.contains(date)) {
        m_instrument.days.append(date);
    }
}

void tst_historyloader::load(HistoryLoader &loader, QDate first, QDate last) const
{
    QSignalSpy loaded(&loader, &HistoryLoader::loaded);
    loader.load(m_instrument, first, last);
    QVERIFY(loaded.wait(kTimeoutMs));
}

void tst_historyloader::load_readsTheDaysOfTheRange()
{
    const QDate first(2026, 11, 1);
    for (int i = 0; i < 5; ++i) {
        add(first.addDays(i), "10:00:00\t0001\t----\tОсновной\n");
    }
    HistoryLoader loader(samples::moscow());
    load(loader, first.addDays(1), first.addDays(3));
    QCOMPARE(loader.history().days().size(), 3U);
    QCOMPARE(loader.history().days().front()->date, first.addDays(1));
    QVERIFY(!loader.isLoading());
}

void tst_historyloader::load_again_readsOnlyChangedFiles()
{
    const QDate first(2026, 11, 1);
    add(first, "10:00:00\t0001\t----\tОсновной\n");
    add(first.addDays(1), "10:00:00\t0001\t----\tОсновной\n");
    HistoryLoader loader(samples::moscow());
    load(loader, first, first.addDays(9));
    const DayPointer unchanged = loader.history().day(first);
    const DayPointer old = loader.history().day(first.addDays(1));
    add(first.addDays(1), "10:00:00\t0001\t----\tОсновной\n10:01:00\t0002\t----\tОсновной\n");
    load(loader, first, first.addDays(9));
    QCOMPARE(loader.history().day(first), unchanged);
    QVERIFY(loader.history().day(first.addDays(1)) != old);
    QCOMPARE(loader.history().day(first.addDays(1))->samples.size(), 2U);
}

void tst_historyloader::newLoad_replacesARunningOne()
{
    const QDate first(2026, 1, 1);
    for (int i = 0; i < 100; ++i) {
        add(first.addDays(i), "10:00:00\t0001\t----\tОсновной\n");
    }
    HistoryLoader loader(samples::moscow());
    QSignalSpy loaded(&loader, &HistoryLoader::loaded);
    loader.load(m_instrument, first, first.addDays(99));
    loader.load(m_instrument, first, first);
    QVERIFY(loaded.wait(kTimeoutMs));
    QCOMPARE(loader.history().days().size(), 1U);
    QVERIFY(!loader.isLoading());
}

void tst_historyloader::vanishedFile_isAProblem()
{
    add(samples::kDate, "10:00:00\t0001\t----\tОсновной\n");
    QVERIFY(QFile::remove(m_instrument.dayFile(samples::kDate)));
    HistoryLoader loader(samples::moscow());
    load(loader, samples::kDate, samples::kDate);
    QCOMPARE(loader.history().problemCount(), 1);
}

void tst_historyloader::unreadFile_isReadWhenItCanBe()
{
    add(samples::kDate, "10:00:00\t0001\t----\tОсновной\n");
    QVERIFY(QFile::remove(m_instrument.dayFile(samples::kDate)));
    HistoryLoader loader(samples::moscow());
    load(loader, samples::kDate, samples::kDate);
    QVERIFY(!loader.history().day(samples::kDate)->isRead());
    QSignalSpy read(&loader, &HistoryLoader::dayLoaded);
    add(samples::kDate, "10:00:00\t0001\t----\tОсновной\n");
    QVERIFY(read.wait(kTimeoutMs));
    QCOMPARE(loader.history().day(samples::kDate)->samples.size(), 1U);
    QCOMPARE(loader.history().problemCount(), 0);
}

void tst_historyloader::today_isReadWhenItGrows()
{
    const QDate today = QDateTime::currentDateTime().toTimeZone(samples::moscow()).date();
    add(today, "00:00:00\t0001\t----\tОсновной\n");
    HistoryLoader loader(samples::moscow());
    load(loader, today, today);
    QSignalSpy read(&loader, &HistoryLoader::dayLoaded);
    add(today, "00:00:00\t0001\t----\tОсновной\n00:01:00\t0002\t----\tОсновной\n");
    QVERIFY(read.wait(kTimeoutMs));
    QCOMPARE(loader.history().day(today)->samples.size(), 2U);
    QVERIFY(QFile::remove(m_instrument.dayFile(today)));
    add(today, "00:02:00\t0001\t----\tОсновной\n");
    QVERIFY(read.wait(kTimeoutMs));
    QCOMPARE(loader.history().day(today)->samples.size(), 1U);
}

// The terminal may write the last line of a day after midnight.
void tst_historyloader::yesterday_isReadWhenItGrows()
{
    const QDate yesterday =
        QDateTime::currentDateTime().toTimeZone(samples::moscow()).date().addDays(-1);
    add(yesterday, "23:58:00\t0001\t----\tОсновной\n");
    HistoryLoader loader(samples::moscow());
    load(loader, yesterday, yesterday);
    QSignalSpy read(&loader, &HistoryLoader::dayLoaded);
    add(yesterday, "23:58:00\t0001\t----\tОсновной\n23:59:00\t0002\t----\tОсновной\n");
    QVERIFY(read.wait(kTimeoutMs));
    QCOMPARE(loader.history().day(yesterday)->samples.size(), 2U);
}

void tst_historyloader::changesWhileReading_areSurvived()
{
    const QDate today = QDateTime::currentDateTime().toTimeZone(samples::moscow()).date();
    QByteArray text;
    for (int second = 0; second < 80000; ++second) {
        text += QTime(0, 0).addSecs(second).toString().toLatin1() + "\t0100\t----\tОсновной\n";
    }
    add(today, text);
    const QString path = m_instrument.dayFile(today);
    std::atomic<bool> stop = false;
    std::thread writer([&] {
        while (!stop) {
            QFile file(path);
            file.resize(text.size() / 3);
            file.remove();
            QSaveFile replaced(path);
            if (replaced.open(QIODevice::WriteOnly) && replaced.write(text) == text.size()) {
                replaced.commit();
            }
        }
    });
    HistoryLoader loader(samples::moscow());
    int wrong = 0;
    for (int i = 0; i < 30; ++i) {
        load(loader, today, today);
        for (const Sample &sample : loader.history().day(today)->samples) {
            wrong += sample.first == LayerValue(100) || sample.first.isUnreadable() ? 0 : 1;
        }
    }
    stop = true;
    writer.join();
    QCOMPARE(wrong, 0);
    samples::write(path, text);
    QTRY_COMPARE_WITH_TIMEOUT(
        loader.history().day(today)->samples.size(), std::size_t(80000), kTimeoutMs);
}

QTEST_GUILESS_MAIN(tst_historyloader)
#include "tst_historyloader.moc"
