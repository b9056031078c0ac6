// SPDX-License-Identifier: GPL-3.0-or-later
#include "pseudoterminal.h"

#include "linereader.h"

#include <QFile>
#include <QTest>

#include <sys/resource.h>

using namespace ork2;

class tst_pseudoterminal : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void open_noDescriptorsLeft_reportsReason();
    void path_followsOpening();
    void write_anyByte_arrivesUnchanged();
    void write_beforeReaderOpens_isKept();
    void write_fullLine_acceptsPartAndKeepsOrder();
    void unread_followsReader();
    void readerPresent_followsReaders();
    void readerPresent_noReader_discardsUnread();
    void readerClosed_afterQuery_makesDescriptorReadable();
    void unread_withoutOwnDescriptor_isReturned();
    void drain_returnsDataFromReader();
    void close_readerSeesHangUp();
};

void tst_pseudoterminal::open_noDescriptorsLeft_reportsReason()
{
    rlimit before{};
    QCOMPARE(::getrlimit(RLIMIT_NOFILE, &before), 0);
    rlimit none = before;
    none.rlim_cur = 0;
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &none), 0);
    PseudoTerminal terminal;
    const bool opened = terminal.open();
    QCOMPARE(::setrlimit(RLIMIT_NOFILE, &before), 0);
    QVERIFY(!opened);
    QVERIFY(!terminal.isOpen());
    QCOMPARE(terminal.errorString(), QStringLiteral("posix_openpt: Too many open files"));
}

void tst_pseudoterminal::path_followsOpening()
{
    PseudoTerminal terminal;
    QCOMPARE(terminal.path(), QString());
    QVERIFY2(terminal.open(), qPrintable(terminal.errorString()));
    QVERIFY(QFile::exists(terminal.path()));
    terminal.close();
    QCOMPARE(terminal.path(), QString());
    QVERIFY(terminal.open());
    QVERIFY(terminal.isOpen());
}

void tst_pseudoterminal::write_anyByte_arrivesUnchanged()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QByteArray all;
    for (int byte = 0; byte < 256; ++byte) {
        all.append(static_cast<char>(byte));
    }
    QCOMPARE(terminal.write(all), all.size());
    QTRY_COMPARE(reader.received.size(), all.size());
    QCOMPARE(reader.received, all);
    QCOMPARE(terminal.drain(), QByteArray());
}

void tst_pseudoterminal::write_beforeReaderOpens_isKept()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    QCOMPARE(terminal.write("H008501500\r"), 11);
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QTRY_COMPARE(reader.received, QByteArray("H008501500\r"));
    reader.close();
    QCOMPARE(terminal.write("H0"), 2);
    QVERIFY(reader.open(terminal.path()));
    QTRY_COMPARE(reader.received, QByteArray("H008501500\rH0"));
}

void tst_pseudoterminal::write_fullLine_acceptsPartAndKeepsOrder()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    const QByteArray block = QByteArray("0123456789").repeated(100000);
    const qsizetype written = terminal.write(block);
    QVERIFY(written > 0 && written < block.size());
    qsizetype more = 0;
    for (qsizetype size = 1; size > 0; more += size) {
        size = terminal.write(QByteArrayView(block).sliced(written + more));
        QVERIFY(size >= 0);
    }
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QTRY_COMPARE(reader.received.size(), written + more);
    QCOMPARE(reader.received, block.left(written + more));
    QTRY_VERIFY(terminal.write("x") == 1);
}

void tst_pseudoterminal::unread_followsReader()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    QCOMPARE(terminal.unread(), 0);
    QCOMPARE(terminal.write("H008501500\r"), 11);
    QTRY_COMPARE(terminal.unread(), 11);
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QTRY_COMPARE(terminal.unread(), 0);
}

void tst_pseudoterminal::readerPresent_followsReaders()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    QVERIFY(!terminal.readerPresent());
    LineReader first;
    LineReader second;
    QVERIFY(first.open(terminal.path()));
    QVERIFY(second.open(terminal.path()));
    QVERIFY(terminal.readerPresent());
    first.close();
    QVERIFY(terminal.readerPresent());
    second.close();
    QVERIFY(!terminal.readerPresent());
    QVERIFY(first.open(terminal.path()));
    QVERIFY(terminal.readerPresent());
    QCOMPARE(terminal.write("\r\n"), 2);
    QTRY_COMPARE(first.received, QByteArray("\r\n"));
    QCOMPARE(first.hangUps, 0);
}

void tst_pseudoterminal::readerPresent_noReader_discardsUnread()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    QCOMPARE(terminal.write("old"), 3);
    QTRY_COMPARE(terminal.unread(), 3);
    QVERIFY(!terminal.readerPresent());
    QCOMPARE(terminal.unread(), 0);
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QVERIFY(terminal.readerPresent());
    QCOMPARE(terminal.write("new"), 3);
    QTRY_COMPARE(reader.received, QByteArray("new"));
}

void tst_pseudoterminal::readerClosed_afterQuery_makesDescriptorReadable()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QVERIFY(terminal.readerPresent());
    QSocketNotifier notifier(terminal.descriptor(), QSocketNotifier::Read);
    int notices = 0;
    connect(&notifier, &QSocketNotifier::activated, this, [&terminal, &notices] {
        ++notices;
        QCOMPARE(terminal.drain(), QByteArray());
        QVERIFY(!terminal.readerPresent());
    });
    reader.close();
    QTRY_COMPARE(notices, 1);
    QCoreApplication::processEvents();
    QCOMPARE(notices, 1);
}

void tst_pseudoterminal::unread_withoutOwnDescriptor_isReturned()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    reader.setReading(false);
    QVERIFY(terminal.readerPresent());
    QCOMPARE(terminal.write("H008501500\r"), 11);
    QTRY_COMPARE(terminal.unread(), 11);
    QVERIFY(terminal.readerPresent());
}

void tst_pseudoterminal::drain_returnsDataFromReader()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    const QByteArray request = QByteArray::fromHex("3a00410000ac110d");
    QVERIFY(reader.send(request));
    QByteArray received;
    QTRY_COMPARE(received += terminal.drain(), request);
    QCOMPARE(terminal.drain(), QByteArray());
}

void tst_pseudoterminal::close_readerSeesHangUp()
{
    PseudoTerminal terminal;
    QVERIFY(terminal.open());
    LineReader reader;
    QVERIFY(reader.open(terminal.path()));
    QCOMPARE(reader.hangUps, 0);
    terminal.close();
    QTRY_COMPARE(reader.hangUps, 1);
}

QTEST_GUILESS_MAIN(tst_pseudoterminal)
#include "tst_pseudoterminal.moc"
