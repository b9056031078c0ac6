// SPDX-License-Identifier: GPL-3.0-or-later
#include "receiver.h"

#include "logcapture.h"
#include "metamembers.h"

#include <QSignalSpy>
#include <QTest>

class tst_receiver : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void type_registered_isKnown();
    void metaObject_members_areInDeclaredOrder();
    void text_received_isEmittedAndLogged();
};

void tst_receiver::type_registered_isKnown()
{
    QVERIFY(!QMetaType::fromName("Receiver*").isValid());
    Receiver::registerType();
    const QMetaType type = QMetaType::fromName("Receiver*");
    QVERIFY(type.isValid());
    QCOMPARE(type.metaObject(), &Receiver::staticMetaObject);
}

void tst_receiver::metaObject_members_areInDeclaredOrder()
{
    const QMetaObject &meta = Receiver::staticMetaObject;
    const QByteArrayList methods = methodSignatures(meta);
    QCOMPARE(
        methods, QByteArrayList({"sendToQml(QString)", "ExitButt()", "receiveFromQml(QString)"}));
    QCOMPARE(meta.method(meta.methodOffset()).parameterNames(), QByteArrayList{"count"});
}

void tst_receiver::text_received_isEmittedAndLogged()
{
    Receiver receiver;
    QSignalSpy texts(&receiver, &Receiver::sendToQml);
    QSignalSpy exits(&receiver, &Receiver::ExitButt);
    LogCapture log;
    receiver.receiveFromQml(QStringLiteral("Привет"));
    QCOMPARE(texts, (QList<QVariantList>{{QStringLiteral("Привет")}}));
    QCOMPARE(exits.count(), 0);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("Получено в C ++ из QML: \"Привет\"")});
}

QTEST_APPLESS_MAIN(tst_receiver)
#include "metamembers.h"
#include "tst_receiver.moc"
