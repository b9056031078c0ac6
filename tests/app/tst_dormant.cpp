// SPDX-License-Identifier: GPL-3.0-or-later
// Features for future use stay inactive: running the complete object graph and calling all slots
// available to the QML documents starts no uploader and opens no database.
#include "terminal.h"

#include "databasesql.h"
#include "dataloggerprobe.h"
#include "logcapture.h"
#include "mainbackendprobe.h"
#include "odbcdriveralias.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "receiver.h"
#include "sharedvalues.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMetaMethod>
#include <QQmlContext>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QTemporaryDir>
#include <QTest>

namespace {

QDateTime g_now;

// Counts uploaders. An uploader is moved to its thread before the thread starts.
class UploaderCounter : public QObject
{
public:
    [[nodiscard]] int seen() const { return m_seen; }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (event->type() == QEvent::ThreadChange && qobject_cast<databasesql *>(object)) {
            ++m_seen;
        }
        return false;
    }

private:
    int m_seen = 0;
};

// Replaces the file browser of the desktop, which the test must not open.
class NoBrowser : public QObject
{
    Q_OBJECT

public:
    NoBrowser() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "ignoreUrl"); }
    ~NoBrowser() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }
    Q_DISABLE_COPY_MOVE(NoBrowser)

public Q_SLOTS:
    void ignoreUrl(const QUrl &url) { Q_UNUSED(url) }
};

// Calls all public slots and invokable methods of an object with default-constructed arguments.
void callAllSlots(QObject *object)
{
    const QMetaObject *meta = object->metaObject();
    for (int i = meta->methodOffset(); i < meta->methodCount(); ++i) {
        const QMetaMethod method = meta->method(i);
        if (method.methodType() == QMetaMethod::Signal || method.access() != QMetaMethod::Public) {
            continue;
        }
        QVariantList values;
        for (int p = 0; p < method.parameterCount(); ++p) {
            values << QVariant(method.parameterMetaType(p));
        }
        QGenericArgument arguments[4];
        QVERIFY(values.size() <= 4);
        for (int p = 0; p < values.size(); ++p) {
            arguments[p] = QGenericArgument(values[p].typeName(), values[p].constData());
        }
        QVERIFY2(method.invoke(object, Qt::DirectConnection, arguments[0], arguments[1],
                     arguments[2], arguments[3]),
            method.methodSignature().constData());
    }
}

} // namespace

class tst_dormant : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void run_allSlotsCalled_startsNoUpload();
};

void tst_dormant::run_allSlotsCalled_startsNoUpload()
{
    ork2::registerOdbcDriverAlias();
    Receiver::registerType();
    const QTemporaryDir base;
    ork2::PseudoTerminal line;
    QVERIFY(line.open());
    profile::clear();
    profile::store(ork2::kNamePath, base.path());
    profile::store(ork2::kPortToShow, line.path());
    LogCapture log;
    UploaderCounter uploaders;
    qApp->installEventFilter(&uploaders);
    const NoBrowser browser;
    {
        ork2::Terminal terminal(*qApp, QUrl(QStringLiteral("qrc:/main")));
        MainBackEndProbe probe(terminal.backEnd());
        const DataloggerProbe writer(*probe.fileWriter());
        g_now = QDateTime(QDate(2026, 11, 15), QTime(12, 33, 30, 500));
        probe.setClock([] { return g_now; });

        // A measurement as started by the start button, with lines in the day file.
        QSignalSpy texts(&terminal.backEnd(), &mainBackEnd::sendCounter);
        currentPortName = line.path();
        terminal.backEnd().enButton();
        QTRY_VERIFY(!texts.isEmpty()
            && texts.constLast().first().toString().contains(QStringLiteral("Открыт")));
        QSignalSpy readings(probe.parser(), &convertData::readyToShowClouds);
        QCOMPARE(line.write("H112342500\r"), qsizetype{11});
        QTRY_COMPARE(readings.count(), 1);
        QSignalSpy lines(probe.fileWriter(), &datalogger::dataLedStatus);
        for (int minute = 34; minute < 37; ++minute) {
            g_now.setTime(QTime(12, minute, 0, 500));
            probe.tickSave();
        }
        QCOMPARE(lines, (QList<QVariantList>{{true}, {true}, {true}}));

        const QVariant published =
            terminal.engine().rootContext()->contextProperty(QStringLiteral("settings"));
        callAllSlots(&terminal.backEnd());
        callAllSlots(published.value<QObject *>());
        QCoreApplication::processEvents();
        terminal.backEnd().disableButton();

        QVERIFY(!writer.uploads());
        QCOMPARE(writer.uploadThread(), nullptr);
        QCOMPARE(writer.uploader(), nullptr);
        QCOMPARE(writer.waitingRows(), 0);
        probe.endWorker();
    }
    QCOMPARE(uploaders.seen(), 0);
    QCOMPARE(QSqlDatabase::connectionNames(), QStringList());
    QCOMPARE(log.lines().filter(QStringLiteral("SQL")), QStringList());
    QCOMPARE(log.lines().filter(QStringLiteral("Получено в C ++")), QStringList());
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_dormant test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_dormant.moc"
