// SPDX-License-Identifier: GPL-3.0-or-later
// The program as it ships, in a process of its own on a real window.
#include "profile.h"
#include "pseudoterminal.h"

#include <QFile>
#include <QProcess>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

namespace {

const QString kTitle = QStringLiteral("Измеритель высоты облаков ОРК-2");
constexpr int kRoundsOfExit = 50;
constexpr int kPatienceMs = 60000;

QString run(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.start(program, arguments);
    process.waitForFinished(kPatienceMs);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

} // namespace

class tst_program : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void measurement_running_closingEndsWithZero_50times();
    void window_shown_carriesClassOfMenuEntry();
    void readerOfTheLog_gone_programGoesOn();
    void document_cannotBeLoaded_endsWithMinusOne();

private:
    void start();
    [[nodiscard]] QString findWindow();
    // Whether the toolkit's lock file says that the line is in use.
    [[nodiscard]] bool isLineLocked() const;
    [[nodiscard]] bool waitForLog(const char *text, int ms) const;
    // What a sanitizer found; the worker's log goes on behind it.
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
        // Flat out: the worker is busy at every moment of the exit.
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

QString tst_program::findWindow()
{
    QString window;
    const bool found = QTest::qWaitFor(
        [&window] {
            window = run(QStringLiteral("xdotool"),
                {QStringLiteral("search"), QStringLiteral("--onlyvisible"),
                    QStringLiteral("--name"), kTitle})
                         .section(u'\n', 0, 0);
            return !window.isEmpty();
        },
        kPatienceMs);
    return found ? window : QString();
}

bool tst_program::isLineLocked() const
{
    const QString device = m_line.path().mid(5).replace(u'/', u'_'); // behind "/dev/"
    return QFile::exists(QStringLiteral("/var/lock/LCK..") + device);
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

void tst_program::measurement_running_closingEndsWithZero_50times()
{
    for (int round = 1; round <= kRoundsOfExit; ++round) {
        start();
        const QString window = findWindow();
        QVERIFY2(!window.isEmpty(), m_log.right(2000));
        // The start button: 90 from the right, 68 from the bottom of the 900 x 750 window.
        // Until the window takes clicks. A click too many would stop the measurement again.
        QVERIFY(QTest::qWaitFor(
            [this, &window] {
                run(QStringLiteral("xdotool"),
                    {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window,
                        QStringLiteral("mousemove"), QStringLiteral("--window"), window,
                        QStringLiteral("810"), QStringLiteral("682"), QStringLiteral("click"),
                        QStringLiteral("1")});
                return waitForLog("Запускаем таймер", kPatienceMs / 6);
            },
            kPatienceMs));
        QVERIFY2(waitForLog("First layer of cloud altitude: 1234", kPatienceMs), m_log.right(2000));
        QVERIFY(isLineLocked());
        run(QStringLiteral("xdotool"),
            {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window,
                QStringLiteral("key"), QStringLiteral("alt+F4")});
        QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, kPatienceMs);
        const QByteArray end =
            "round " + QByteArray::number(round) + ":\n" + reports() + m_log.right(1000);
        QVERIFY2(m_program->exitStatus() == QProcess::NormalExit, end);
        QVERIFY2(m_program->exitCode() == 0, end);
        QVERIFY2(!isLineLocked(), end);
        QVERIFY2(!m_log.contains("No such slot") && !m_log.contains("No such signal"), end);
        QVERIFY2(!m_log.contains("TypeError") && !m_log.contains("ReferenceError"), end);
    }
}

void tst_program::window_shown_carriesClassOfMenuEntry()
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

void tst_program::readerOfTheLog_gone_programGoesOn()
{
    QProcess reader;
    m_program.reset(new QProcess);
    m_program->setProcessChannelMode(QProcess::MergedChannels);
    m_program->setStandardOutputProcess(&reader);
    m_program->start(QStringLiteral(TERMINAL), QStringList());
    reader.start(QStringLiteral("true"), QStringList());
    QVERIFY(reader.waitForFinished(kPatienceMs));
    // The start logs a dozen lines before and after the window comes.
    const QString window = findWindow();
    QVERIFY(!window.isEmpty());
    run(QStringLiteral("xdotool"),
        {QStringLiteral("windowactivate"), QStringLiteral("--sync"), window, QStringLiteral("key"),
            QStringLiteral("alt+F4")});
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, kPatienceMs);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    QCOMPARE(m_program->exitCode(), 0);
}

void tst_program::document_cannotBeLoaded_endsWithMinusOne()
{
    // Beside a copy of the program, a qt.conf that hides the toolkit's QML modules.
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
    QVERIFY(program.waitForFinished(kPatienceMs));
    const QByteArray output = program.readAll();
    QVERIFY2(program.exitStatus() == QProcess::NormalExit, output);
    QVERIFY2(static_cast<qint8>(program.exitCode()) == -1, output);
    QVERIFY2(output.contains("qrc:/main"), output);
}

QTEST_GUILESS_MAIN(tst_program)
#include "tst_program.moc"
