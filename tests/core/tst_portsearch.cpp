// SPDX-License-Identifier: GPL-3.0-or-later
#include "portsearch.h"

#include <QSerialPortInfo>
#include <QTest>

class tst_portsearch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instrumentPort_isTheOnlyAdapter_data();
    void instrumentPort_isTheOnlyAdapter();
    void presentPorts_areThoseOfTheSystem();
};

void tst_portsearch::instrumentPort_isTheOnlyAdapter_data()
{
    using Ports = QList<ork2::PresentPort>;
    const QString one = QStringLiteral("ttyUSB3");
    const QString other = QStringLiteral("ttyUSB5");
    QTest::addColumn<Ports>("ports");
    QTest::addColumn<QString>("found"); // empty: none
    QTest::newRow("none") << Ports() << QString();
    QTest::newRow("one") << Ports{{one, 0x6001}} << one;
    QTest::newRow("lowest bit in common") << Ports{{one, 0x0001}} << one;
    QTest::newRow("higher bits in common") << Ports{{one, 0x6000}} << one;
    QTest::newRow("no bit in common") << Ports{{one, 0x1FFE}} << QString();
    QTest::newRow("one among ports without")
        << Ports{{QStringLiteral("ttyS0"), 0}, {one, 0x2303}, {QStringLiteral("ttyS1"), 0}} << one;
    QTest::newRow("two") << Ports{{one, 0x6001}, {other, 0x6001}} << QString();
}

void tst_portsearch::instrumentPort_isTheOnlyAdapter()
{
    QFETCH(const QList<ork2::PresentPort>, ports);
    QFETCH(const QString, found);
    QCOMPARE(ork2::instrumentPort(ports).value_or(QString()), found);
}

// Only meaningful on a machine with a serial port.
void tst_portsearch::presentPorts_areThoseOfTheSystem()
{
    const auto present = ork2::presentPorts();
    const auto expected = QSerialPortInfo::availablePorts();
    QCOMPARE(present.size(), expected.size());
    for (qsizetype i = 0; i < present.size(); ++i) {
        QCOMPARE(present.at(i).name, expected.at(i).portName());
        QCOMPARE(present.at(i).productId, expected.at(i).productIdentifier());
    }
}

QTEST_GUILESS_MAIN(tst_portsearch)
#include "tst_portsearch.moc"
