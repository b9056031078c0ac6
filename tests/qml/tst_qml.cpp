// SPDX-License-Identifier: GPL-3.0-or-later
// Runs the tests of the QML documents with the objects of the program and a separate settings
// store.
#include "mainbackend.h"
#include "settings.h"
#include "settingskeys.h"
#include "startup.h"
#include "uidata.h"

#include <QApplication>
#include <QDesktopServices>
#include <QMutex>
#include <QQmlContext>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QUrl>
#include <QtQuickTest/quicktest.h>

#include <memory>

// Gives tests access to the debug log, the settings store, the URLs opened in other programs and
// the number of quit requests. Available in the tests as "testLog".
class TestLog : public QObject
{
    Q_OBJECT

public:
    TestLog()
    {
        s_current = this;
        installHandler();
        for (const QString &scheme : schemes()) {
            QDesktopServices::setUrlHandler(scheme, this, "openUrl");
        }
    }
    ~TestLog() override
    {
        for (const QString &scheme : schemes()) {
            QDesktopServices::unsetUrlHandler(scheme);
        }
        qInstallMessageHandler(m_next);
        s_current = nullptr;
    }
    Q_DISABLE_COPY_MOVE(TestLog)

    Q_INVOKABLE QStringList lines() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_lines;
    }

    // Warnings and errors since the last clear().
    Q_INVOKABLE QStringList warnings() const
    {
        const QMutexLocker lock(&m_mutex);
        return m_warnings;
    }

    Q_INVOKABLE QStringList openedUrls() const { return m_openedUrls; }

    // The number of quit requests since the last clear().
    Q_INVOKABLE int quits() const { return m_quits; }

    // Called at the start of each test.
    Q_INVOKABLE void clear()
    {
        installHandler();
        const QMutexLocker lock(&m_mutex);
        m_lines.clear();
        m_warnings.clear();
        m_openedUrls.clear();
        m_quits = 0;
    }

    // Returns an empty text if the key does not exist; see isStored().
    Q_INVOKABLE QString storedText(const QString &key) const
    {
        return ork2::settingsStore().value(key).toString();
    }

    Q_INVOKABLE bool isStored(const QString &key) const
    {
        return ork2::settingsStore().contains(key);
    }

    Q_INVOKABLE void store(const QString &key, const QString &value)
    {
        QSettings store = ork2::settingsStore();
        store.setValue(key, value);
        store.sync();
    }

    Q_INVOKABLE void forget(const QString &key)
    {
        QSettings store = ork2::settingsStore();
        store.remove(key);
        store.sync();
    }

public Q_SLOTS:
    void openUrl(const QUrl &url) { m_openedUrls << url.toString(); }
    void countQuit() { ++m_quits; }

private:
    static QStringList schemes()
    {
        return {QStringLiteral("file"), QStringLiteral("http"), QStringLiteral("https"),
            QStringLiteral("mailto"), QStringLiteral("tel")};
    }

    // The test framework installs its own handler when the first test starts.
    void installHandler()
    {
        const QtMessageHandler before = qInstallMessageHandler(keep);
        if (before != keep) {
            m_next = before;
        }
    }

    static void keep(QtMsgType type, const QMessageLogContext &context, const QString &text)
    {
        {
            const QMutexLocker lock(&s_current->m_mutex);
            s_current->m_lines << text;
            const bool harmless = text.contains(QLatin1String("XDG_RUNTIME_DIR"));
            if (type != QtDebugMsg && type != QtInfoMsg && !harmless) {
                s_current->m_warnings << text;
            }
        }
        s_current->m_next(type, context, text);
    }

    static inline TestLog *s_current = nullptr;
    mutable QMutex m_mutex;
    QStringList m_lines;
    QStringList m_warnings;
    QStringList m_openedUrls;
    int m_quits = 0;
    QtMessageHandler m_next = nullptr;
};

class Setup : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void qmlEngineAvailable(QQmlEngine *engine)
    {
#if QT_VERSION < QT_VERSION_CHECK(6, 5, 0)
        engine->addImportPath(QStringLiteral("qrc:/compat"));
#endif
        ork2::publishVersion();
        m_world.reset();
        m_world = std::make_unique<World>();
        connect(engine, &QQmlEngine::quit, &m_world->log, &TestLog::countQuit);
        QQmlContext *context = engine->rootContext();
        context->setContextProperty(QStringLiteral("testLog"), &m_world->log);
        context->setContextProperty(QStringLiteral("mainBackEnd"), &m_world->backEnd);
        context->setContextProperty(QStringLiteral("settings"), &m_world->settingsReader);
        context->setContextProperty(QStringLiteral("uiData"), &m_world->uiData);
        context->setContextProperty(QStringLiteral("uiData2"), &m_world->uiData2);
        ork2::connectCharts(m_world->backEnd, m_world->uiData, m_world->uiData2);
    }

    void cleanupTestCase()
    {
        m_world.reset();
    }

private:
    struct World
    {
        TestLog log;
        UiData uiData;
        UiData uiData2;
        mainBackEnd backEnd;
        settings settingsReader;
    };
    std::unique_ptr<World> m_world;
};

int main(int argc, char *argv[])
{
    const QTemporaryDir profile;
    qputenv("XDG_CONFIG_HOME", profile.path().toLocal8Bit());
    QApplication application(argc, argv);
    Setup setup;
    return quick_test_main_with_setup(argc, argv, "qml", nullptr, &setup);
}

#include "tst_qml.moc"
