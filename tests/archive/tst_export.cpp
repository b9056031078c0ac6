// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the program without a display.
#include "samples.h"
#include "timeout.h"

#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

namespace {

struct Result
{
    int exitCode = -1;
    QByteArray errors;
};

} // namespace

class tst_export : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void csv_hasTheExpectedBytes();
    void dates_areInclusive();
    void picture_isWritten();
    void pdf_hasVectorsOnly();
    void dataFolder_isUnchanged();
    void damagedLine_isListed();
    void failures_haveExitCodes();
    void fullDisk_leavesNoFile_data();
    void fullDisk_leavesNoFile();

private:
    [[nodiscard]] Result run(const QStringList &arguments) const;
    [[nodiscard]] static Result start(const QString &command, const QStringList &arguments);
    [[nodiscard]] QString file(const QString &name) const { return m_folder.filePath(name); }
    [[nodiscard]] QByteArray contents(const QString &name) const;
    [[nodiscard]] QStringList listing() const;

    QTemporaryDir m_folder;
};

void tst_export::initTestCase()
{
    samples::write(file(QStringLiteral("Data/ORK-2 N17/2026.11.21.txt")),
        "\r\n23:59:00\t0100\t----\tОсновной");
    samples::write(file(QStringLiteral("Data/ORK-2 N17/2026.11.22.txt")),
        "\r\n00:00:00\t0200\t0900\tРезерв\r\n00:01:00\t7777\t7777\tРезерв");
    samples::write(file(QStringLiteral("Data/ORK-2 N17/2026.11.23.txt")),
        "\r\n00:00:00\t0300\t----\tОсновной\r\nx");
}

Result tst_export::run(const QStringList &arguments) const
{
    return start(QStringLiteral(ORK2_ARCHIVE), arguments);
}

Result tst_export::start(const QString &command, const QStringList &arguments)
{
    QProcess program;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const char *name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        environment.remove(QString::fromLatin1(name));
    }
    program.setProcessEnvironment(environment);
    program.start(command, arguments);
    if (!program.waitForFinished(kTimeoutMs)) {
        return {};
    }
    return {program.exitStatus() == QProcess::NormalExit ? program.exitCode() : -1,
        program.readAllStandardError()};
}

QByteArray tst_export::contents(const QString &name) const
{
    QFile result(file(name));
    return result.open(QIODevice::ReadOnly) ? result.readAll() : QByteArray("cannot be read");
}

QStringList tst_export::listing() const
{
    QStringList entries;
    const QDir folder(file(QStringLiteral("Data/ORK-2 N17")));
    for (const QFileInfo &info : folder.entryInfoList(QDir::Files)) {
        entries += info.fileName() + QString::number(info.size())
            + info.lastModified().toString(Qt::ISODateWithMs);
    }
    return entries;
}

void tst_export::csv_hasTheExpectedBytes()
{
    const Result result = run(
        {QStringLiteral("--export"), file(QStringLiteral("a.csv")), file(QStringLiteral("Data"))});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(contents(QStringLiteral("a.csv")),
        QByteArray("Время,Первый слой (м),Второй слой (м),Канал,Код\r\n"
                   "2026-11-21T23:59:00+03:00,100,,Основной,\r\n"
                   "2026-11-22T00:00:00+03:00,200,900,Резерв,\r\n"
                   "2026-11-22T00:01:00+03:00,,,Резерв,7777\r\n"
                   "2026-11-23T00:00:00+03:00,300,,Основной,\r\n"));
}

void tst_export::dates_areInclusive()
{
    QCOMPARE(
        run({QStringLiteral("--export"), file(QStringLiteral("b.csv")), QStringLiteral("--from"),
                QStringLiteral("2026-11-22"), QStringLiteral("--to"), QStringLiteral("2026-11-22"),
                QStringLiteral("--unit"), QStringLiteral("17"), file(QStringLiteral("Data"))})
            .exitCode,
        0);
    QCOMPARE(contents(QStringLiteral("b.csv")),
        QByteArray("Время,Первый слой (м),Второй слой (м),Канал,Код\r\n"
                   "2026-11-22T00:00:00+03:00,200,900,Резерв,\r\n"
                   "2026-11-22T00:01:00+03:00,,,Резерв,7777\r\n"));
}

void tst_export::picture_isWritten()
{
    const QString name = file(QStringLiteral("a.png"));
    QCOMPARE(run({QStringLiteral("--export"), name, file(QStringLiteral("Data"))}).exitCode, 0);
    const QImage picture(name);
    QCOMPARE(picture.size(), QSize(3200, 1800));
    // The colours of the reserve channel and of the first layer.
    bool reserve = false;
    bool layer = false;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb pixel = picture.pixel(x, y) & 0xFFFFFF;
            reserve = reserve || pixel == 0xB22222;
            layer = layer || pixel == 0x209FDF;
        }
    }
    QVERIFY(reserve && layer);
}

void tst_export::pdf_hasVectorsOnly()
{
    const QString name = file(QStringLiteral("a.pdf"));
    QCOMPARE(run({QStringLiteral("--export"), name, file(QStringLiteral("Data"))}).exitCode, 0);
    const QByteArray pdf = contents(QStringLiteral("a.pdf"));
    QVERIFY(pdf.startsWith("%PDF-"));
    QVERIFY(!pdf.contains("/Subtype /Image"));
}

void tst_export::dataFolder_isUnchanged()
{
    const QStringList before = listing();
    QCOMPARE(before.size(), 3);
    QCOMPARE(run({QStringLiteral("--export"), file(QStringLiteral("c.csv")),
                     file(QStringLiteral("Data"))})
                 .exitCode,
        0);
    QCOMPARE(listing(), before);
}

void tst_export::damagedLine_isListed()
{
    QVERIFY(run(
        {QStringLiteral("--export"), file(QStringLiteral("d.csv")), file(QStringLiteral("Data"))})
                .errors.contains("2026.11.23.txt:3: строка не читается"));
}

void tst_export::failures_haveExitCodes()
{
    const QString data = file(QStringLiteral("Data"));
    const QString option = QStringLiteral("--export");
    QCOMPARE(run({option, QStringLiteral("/none/a.csv"), data}).exitCode, 1);
    QCOMPARE(run({option, QStringLiteral("/none/a.png"), data}).exitCode, 1);
    QCOMPARE(run({option, QStringLiteral("/none/a.pdf"), data}).exitCode, 1);
    QCOMPARE(run({option, file(QStringLiteral("e.csv")), file(QStringLiteral("no"))}).exitCode, 1);
    QCOMPARE(run({option, file(QStringLiteral("e.csv")), QStringLiteral("--unit"),
                     QStringLiteral("3"), data})
                 .exitCode,
        1);
    QCOMPARE(run({option, file(QStringLiteral("e.txt")), data}).exitCode, 2);
    QCOMPARE(run({QStringLiteral("--other"), data}).exitCode, 2);
}

void tst_export::fullDisk_leavesNoFile_data()
{
    QTest::addColumn<QString>("name");

    for (const char *name : {"full.csv", "full.png", "full.pdf"}) {
        QTest::newRow(name) << QString::fromLatin1(name);
    }
}

// Writing fails beyond a length, as it does when the disk is full.
void tst_export::fullDisk_leavesNoFile()
{
    QFETCH(QString, name);
    const QString path = file(name);
    const Result result = start(QStringLiteral("/bin/sh"),
        {QStringLiteral("-c"), QStringLiteral("trap '' XFSZ; ulimit -f 0; exec \"$0\" \"$@\""),
            QStringLiteral(ORK2_ARCHIVE), QStringLiteral("--export"), path,
            file(QStringLiteral("Data"))});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.errors.contains(path.toUtf8()));
    QVERIFY(!QFile::exists(path));
}

QTEST_GUILESS_MAIN(tst_export)
#include "tst_export.moc"
