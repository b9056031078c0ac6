// SPDX-License-Identifier: GPL-3.0-or-later
// The serial worker as built on systems without poll().
#include "comport.h"

#include "comportprobe.h"
#include "failingsignals.h"
#include "pseudoterminal.h"
#include "timeout.h"

#include <QSignalSpy>
#include <QTest>

class tst_comportwithoutpoll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void adapter_signalsFail_staysOpen();
};

void tst_comportwithoutpoll::adapter_signalsFail_staysOpen()
{
#ifndef Q_OS_LINUX
    QSKIP("The response of an adapter can be simulated on Linux only");
#else
    ork2::PseudoTerminal line;
    QVERIFY2(line.open(), qPrintable(line.errorString()));
    ComPort port;
    port.Write_Settings_Port(line.path(), 9600, 8, 0, 1, 0);
    port.ConnectPort();
    QSignalSpy texts(&port, &ComPort::error_);
    QTimer &watch = ComPortProbe::watch(port);
    QSignalSpy checks(&watch, &QTimer::timeout);
    g_signalsFail = true;
    watch.start(1);
    QTRY_VERIFY_WITH_TIMEOUT(checks.count() >= 10, kTimeoutMs);
    g_signalsFail = false;
    QCOMPARE(texts.count(), 0);
    QVERIFY(port.port().isOpen());
#endif
}

QTEST_GUILESS_MAIN(tst_comportwithoutpoll)
#include "tst_comportwithoutpoll.moc"
