// SPDX-License-Identifier: GPL-3.0-or-later
#include "csvexport.h"
#include "dayreader.h"
#include "samples.h"

#include <QBuffer>

using namespace ork2;

namespace {

QByteArray csv(const QByteArray &dayFile, QDate date, const QByteArray &zone)
{
    History history;
    history.set(std::make_shared<Day>(parseDay(dayFile, date, 17, QTimeZone(zone))));
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    return writeCsv(buffer, history, 0, samples::kStart * 2, QTimeZone(zone)) ? buffer.data()
                                                                              : "failed";
}

} // namespace

class tst_csvexport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines_haveTheExpectedBytes();
    void endOfSummerTime_isUnambiguous();
    void utc_hasANumericOffset();
    void range_isHalfOpen();
    void failedDevice_isReported();
};

void tst_csvexport::lines_haveTheExpectedBytes()
{
    QCOMPARE(csv("00:00:00\t0850\t1500\tОсновной\n"
                 "00:01:00\t----\t----\tРезерв\n"
                 "00:02:00\t7777\t7777\tОсновной\n"
                 "00:03:00\t0420\t8888\tОсновной\n"
                 "00:04:00\t9999\t8888\tx\n"
                 "23:59:00\t08x0\t0007\tРезерв\n",
                 samples::kDate, "Europe/Moscow"),
        QByteArray("Время,Первый слой (м),Второй слой (м),Канал,Код\r\n"
                   "2026-11-22T00:00:00+03:00,850,1500,Основной,\r\n"
                   "2026-11-22T00:01:00+03:00,,,Резерв,\r\n"
                   "2026-11-22T00:02:00+03:00,,,Основной,7777\r\n"
                   "2026-11-22T00:03:00+03:00,420,,Основной,8888\r\n"
                   "2026-11-22T00:04:00+03:00,,,,9999 8888\r\n"
                   "2026-11-22T23:59:00+03:00,,7,Резерв,?\r\n"));
}

void tst_csvexport::endOfSummerTime_isUnambiguous()
{
    QCOMPARE(csv("02:59:00\t0001\t----\tРезерв\n"
                 "02:00:00\t0002\t----\tРезерв\n"
                 "03:00:00\t0003\t----\tРезерв\n",
                 QDate(2026, 10, 25), "Europe/Berlin"),
        QByteArray("Время,Первый слой (м),Второй слой (м),Канал,Код\r\n"
                   "2026-10-25T02:59:00+02:00,1,,Резерв,\r\n"
                   "2026-10-25T02:00:00+01:00,2,,Резерв,\r\n"
                   "2026-10-25T03:00:00+01:00,3,,Резерв,\r\n"));
}

void tst_csvexport::utc_hasANumericOffset()
{
    QVERIFY(csv("00:00:00\t0850\t1500\tОсновной", samples::kDate, "UTC")
                .endsWith("2026-11-22T00:00:00+00:00,850,1500,Основной,\r\n"));
}

void tst_csvexport::range_isHalfOpen()
{
    const History history =
        samples::history({samples::height(0, 1), samples::height(1, 2), samples::height(2, 3)});
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QVERIFY(
        writeCsv(buffer, history, samples::kStart + 60, samples::kStart + 120, QTimeZone("UTC")));
    QCOMPARE(buffer.data().count('\n'), 2);
    QVERIFY(buffer.data().contains("00:01:00+00:00,2,"));
}

void tst_csvexport::failedDevice_isReported()
{
    QFile full(QStringLiteral("/dev/full"));
    QVERIFY(full.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    QVERIFY(!writeCsv(
        full, samples::history({samples::height(0, 1)}), 0, samples::kStart * 2, QTimeZone("UTC")));
}

QTEST_GUILESS_MAIN(tst_csvexport)
#include "tst_csvexport.moc"
