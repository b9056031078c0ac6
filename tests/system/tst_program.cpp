// SPDX-License-Identifier: GPL-3.0-or-later
// Tests the program in a separate process with a real window.
#include "portlock.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "timeout.h"

#include <QFile>
#include <QHash>
#include <QPoint>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>

namespace {

const QString kTitle = QStringLiteral("Измеритель высоты облаков ОРК-2");
// 90 pixels from the right and 68 from the bottom of the 900 x 750 window.
constexpr QPoint kStartButton(810, 682);
constexpr int kRoundsOfExit = 50;

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(kTimeoutMs);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

// Returns the id of a visible window, or an empty text if there is none.
QString shownWindow(const QString &title)
{
    return run(QStringLiteral("xdotool"),
        {QStringLiteral("search"), QStringLiteral("--onlyvisible"), QStringLiteral("--name"),
            u'^' + title + u'$'})
        .section(u'\n', 0, 0);
}

} // namespace

class tst_program : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void measurement_closed50Times_exitsWithZero();
    void window_shown_hasClassOfMenuEntry();
    void logReader_exits_programContinues();
    void closing_anyState_exitsWithZero_data();
    void closing_anyState_exitsWithZero();
    void document_cannotBeLoaded_exitsWithMinusOne();

private:
    void start();
    void click(const QString &window, const QPoint &place) const;
    [[nodiscard]] bool close(const QString &window, const std::function<bool()> &closed) const;
    [[nodiscard]] bool hasExited() const { return m_program->state() == QProcess::NotRunning; }
    // Clicks until the log contains the text: a window that has just been shown may miss a click.
    [[nodiscard]] bool clickUntilLogged(
        const QString &window, const QPoint &place, const QByteArray &text);
    void checkExit();
    [[nodiscard]] QString findWindow(const QString &title = kTitle);
    [[nodiscard]] bool waitForLog(const char *text, int ms) const;
    // Returns the report of a sanitizer. The worker may continue to log after it.
    [[nodiscard]] QByteArray reports() const;

    QTemporaryDir m_folder;
    ork2::PseudoTerminal m_line;
    QTimer m_frames;
    QScopedPointer<QProcess> m_program;
    QByteArray m_log;
};

void tst_program::init()
{
    QVERIFY(m_line.open());
    profile::clear();
    profile::store(ork2::kPortToShow, m_line.path());
    profile::store(ork2::kNamePath, m_folder.path());
    m_frames.callOnTimeout([this] {
        // As fast as possible, so that the worker is busy during the exit.
        while (m_line.write(QByteArrayLiteral("H112342345\r")) == 11) { }
    });
    m_frames.start(5);
}

void tst_program::cleanup()
{
    m_frames.stop();
    if (m_program && m_program->state() != QProcess::NotRunning) {
        m_program->kill();
        m_program->waitForFinished();
    }
}

void tst_program::start()
{
    m_log.clear();
    m_program.reset(new QProcess);
    m_program->setProcessChannelMode(QProcess::MergedChannels);
    connect(m_program.get(), &QProcess::readyRead, this, [this] { m_log += m_program->readAll(); });
    m_program->start(QStringLiteral(TERMINAL), QStringList());
    QVERIFY(m_program->waitForStarted());
}

QString tst_program::findWindow(const QString &title)
{
    QString window;
    const bool found =
        QTest::qWaitFor([&] { return !(window = shownWindow(title)).isEmpty(); }, kTimeoutMs);
    return found ? window : QString();
}

void tst_program::click(const QString &window, const QPoint &place) const
{
    run(QStringLiteral("xdotool"),
        {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window,
            QStringLiteral("mousemove"), QStringLiteral("--window"), window,
            QString::number(place.x()), QString::number(place.y()), QStringLiteral("click"),
            QStringLiteral("1")});
}

bool tst_program::clickUntilLogged(
    const QString &window, const QPoint &place, const QByteArray &text)
{
    return QTest::qWaitFor(
        [&] {
            click(window, place);
            return waitForLog(text, kTimeoutMs / 6);
        },
        kTimeoutMs);
}

// On a busy machine, the window manager may miss a key, so it is pressed until the window closes.
bool tst_program::close(const QString &window, const std::function<bool()> &closed) const
{
    return QTest::qWaitFor(
        [&] {
            run(QStringLiteral("xdotool"),
                {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window,
                    QStringLiteral("key"), QStringLiteral("alt+F4")});
            return QTest::qWaitFor(closed, kTimeoutMs / 6);
        },
        kTimeoutMs);
}

// Checks that the program exited normally, logged no errors and released the port.
void tst_program::checkExit()
{
    QTRY_VERIFY_WITH_TIMEOUT(hasExited(), kTimeoutMs);
    const QByteArray end = reports() + m_log.right(1000);
    QVERIFY2(m_program->exitStatus() == QProcess::NormalExit, end);
    QVERIFY2(m_program->exitCode() == 0, end);
    QVERIFY2(!portIsLocked(m_line.path()), end);
    QVERIFY2(!m_log.contains("No such slot") && !m_log.contains("No such signal"), end);
    QVERIFY2(!m_log.contains("TypeError") && !m_log.contains("ReferenceError"), end);
}

bool tst_program::waitForLog(const char *text, int ms) const
{
    return QTest::qWaitFor([this, text] { return m_log.contains(text); }, ms);
}

QByteArray tst_program::reports() const
{
    QByteArray found;
    const QList<QByteArray> lines = m_log.split('\n');
    for (const QByteArray &line : lines) {
        const QByteArray text = line.trimmed();
        if (text.startsWith('#') || text.contains("Sanitizer") || text.contains("leak of")) {
            found += line + '\n';
        }
    }
    return found;
}

void tst_program::measurement_closed50Times_exitsWithZero()
{
    for (int round = 1; round <= kRoundsOfExit; ++round) {
        start();
        const QString window = findWindow();
        QVERIFY2(!window.isEmpty(), m_log.right(2000));
        // An additional click would stop the measurement.
        QVERIFY(clickUntilLogged(window, kStartButton, "Запускаем таймер"));
        QVERIFY2(waitForLog("First layer of cloud altitude: 1234", kTimeoutMs), m_log.right(2000));
        QVERIFY(portIsLocked(m_line.path()));
        QVERIFY(close(window, [this] { return hasExited(); }));
        checkExit();
        if (QTest::currentTestFailed()) {
            QFAIL("round " + QByteArray::number(round));
        }
    }
}

void tst_program::closing_anyState_exitsWithZero_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"splash screen", "stopped", "right after Start", "right after Stop",
             "menu open", "port missing", "port cannot be opened", "line unplugged"}) {
        QTest::newRow(state) << QString::fromLatin1(state);
    }
    for (const char *panel : {"Параметры", "Номер прибора", "О нас...", "Панель управления"}) {
        QTest::newRow(panel) << QString::fromUtf8(panel);
    }
}

// ORK2_CLOSINGS sets how often each state is tested.
void tst_program::closing_anyState_exitsWithZero()
{
    QFETCH(QString, state);
    static const QHash<QString, QList<QPoint>> clicksToPanel = {
        {QStringLiteral("Параметры"), {{70, 10}, {90, 33}}},
        {QStringLiteral("Номер прибора"), {{70, 10}, {90, 55}}},
        {QStringLiteral("О нас..."), {{197, 10}, {250, 33}}},
        {QStringLiteral("Панель управления"), {{118, 682}}},
    };
    static const QStringList modal = {QStringLiteral("Параметры"), QStringLiteral("Номер прибора")};
    const int rounds = qEnvironmentVariableIntValue("ORK2_CLOSINGS");
    if (rounds == 0) {
        QSKIP("run by tests/endurance/user: its clicks occasionally end the window manager");
    }
    for (int round = 1; round <= rounds; ++round) {
        if (state == u"port missing") {
            profile::store(ork2::kPortToShow, QStringLiteral("/dev/no-such-port"));
        } else if (state == u"port cannot be opened") {
            profile::store(ork2::kPortToShow, QStringLiteral("/dev/null"));
        } else {
            profile::store(ork2::kPortToShow, m_line.path());
        }
        start();
        if (state == u"splash screen") {
            const auto search = [] {
                return run(QStringLiteral("xdotool"),
                    {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                        QStringLiteral("--class"), QStringLiteral("ork2-terminal")});
            };
            QVERIFY2(QTest::qWaitFor([&] { return !search().isEmpty(); }, kTimeoutMs),
                QStringLiteral("round %1, state of the program %2, log: %3")
                    .arg(round)
                    .arg(m_program->state())
                    .arg(QString::fromUtf8(m_log.right(2000)))
                    .toUtf8());
            run(QStringLiteral("xdotool"),
                {QStringLiteral("mousemove"), QStringLiteral("640"), QStringLiteral("512"),
                    QStringLiteral("click"), QStringLiteral("1"), QStringLiteral("key"),
                    QStringLiteral("alt+F4")});
        }
        const QString window = findWindow();
        QVERIFY2(!window.isEmpty(), m_log.right(2000));
        const bool measures = state == u"line unplugged" || clicksToPanel.contains(state)
            || state == u"right after Stop";
        if (measures) {
            QVERIFY(clickUntilLogged(window, kStartButton, "First layer of cloud altitude: 1234"));
        }
        if (state == u"right after Start") {
            QVERIFY(clickUntilLogged(window, kStartButton, "Запускаем таймер"));
        } else if (state == u"right after Stop") {
            click(window, kStartButton);
        } else if (state == u"port missing" || state == u"port cannot be opened") {
            QVERIFY(clickUntilLogged(window, kStartButton, "cpp: Msg: "));
        } else if (state == u"menu open") {
            click(window, {20, 10});
        } else if (state == u"line unplugged") {
            m_frames.stop();
            m_line.close();
            QTRY_VERIFY_WITH_TIMEOUT(m_log.contains("Закрыт!"), kTimeoutMs);
        }
        for (const QPoint &place : clicksToPanel.value(state)) {
            click(window, place);
        }
        if (clicksToPanel.contains(state)) {
            const QString panel = findWindow(state);
            QVERIFY2(!panel.isEmpty(), m_log.right(2000));
            if (modal.contains(state)) { // the main window cannot be closed while it is open
                QVERIFY(close(panel, [&] { return shownWindow(state).isEmpty(); }));
            }
        }
        QVERIFY(close(window, [this] { return hasExited(); }));
        checkExit();
        if (state == u"line unplugged") {
            QVERIFY(m_line.open());
            m_frames.start();
        }
        if (QTest::currentTestFailed()) {
            return;
        }
    }
}

void tst_program::window_shown_hasClassOfMenuEntry()
{
    const QSettings entry(QStringLiteral(MENU_ENTRY), QSettings::IniFormat);
    const QString expected = entry.value(QStringLiteral("Desktop Entry/StartupWMClass")).toString();
    QVERIFY(!expected.isEmpty());
    start();
    const QString window = findWindow();
    QVERIFY2(!window.isEmpty(), m_log.right(2000));
    const QString shown = run(QStringLiteral("xprop"),
        {QStringLiteral("-id"), window, QStringLiteral("-notype"), QStringLiteral("WM_CLASS")});
    QCOMPARE(shown, QStringLiteral("WM_CLASS = \"%1\", \"%1\"").arg(expected));
}

void tst_program::logReader_exits_programContinues()
{
    QProcess reader;
    m_program.reset(new QProcess);
    m_program->setProcessChannelMode(QProcess::MergedChannels);
    m_program->setStandardOutputProcess(&reader);
    m_program->start(QStringLiteral(TERMINAL), QStringList());
    reader.start(QStringLiteral("true"), QStringList());
    QVERIFY(reader.waitForFinished(kTimeoutMs));
    // The program logs several lines before and after it shows the window.
    const QString window = findWindow();
    QVERIFY(!window.isEmpty());
    run(QStringLiteral("xdotool"),
        {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window, QStringLiteral("key"),
            QStringLiteral("alt+F4")});
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, kTimeoutMs);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
}

void tst_program::document_cannotBeLoaded_exitsWithMinusOne()
{
    // A copy of the program with a qt.conf that hides Qt's QML modules.
    const QString copy = m_folder.filePath(QStringLiteral("ork2-terminal"));
    QVERIFY(QFile::copy(QStringLiteral(TERMINAL), copy));
    QFile conf(m_folder.filePath(QStringLiteral("qt.conf")));
    QVERIFY(conf.open(QIODevice::WriteOnly));
    conf.write("[Paths]\nPrefix = /usr\nQmlImports = /nowhere\nQml2Imports = /nowhere\nPlugins = ");
    conf.write(QLibraryInfo::path(QLibraryInfo::PluginsPath).toUtf8() + "\n");
    conf.close();
    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(copy, QStringList());
    QVERIFY(program.waitForFinished(kTimeoutMs));
    const QByteArray output = program.readAll();
    QVERIFY2(program.exitStatus() == QProcess::NormalExit, output);
    QVERIFY2(static_cast<qint8>(program.exitCode()) == -1, output);
    QVERIFY2(output.contains("qrc:/main"), output);
}

QTEST_GUILESS_MAIN(tst_program)
#include "tst_program.moc"
