// SPDX-License-Identifier: GPL-3.0-or-later
// Simulates a user of the complete object graph with a simulated line: random clicks, keys, window
// operations and frames, Start and Stop a thousand times per second, and the exit in every state.
// ORK2_USER_EVENTS sets the number of events, ORK2_USER_SEED the seed of the random numbers.
#include "testterminal.h"

#include "documentitem.h"
#include "frames.h"
#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "pseudoterminal.h"
#include "readingframe.h"
#include "seededrandom.h"
#include "sharedvalues.h"
#include "timeout.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QElapsedTimer>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

namespace {

constexpr int kDefaultEvents = 400;
constexpr int kEventsInRound = 200;
constexpr int kTogglesInBurst = 1000;
constexpr int kToggleIntervalMs = 1;
constexpr int kFrameIntervalMs = 2;
constexpr qsizetype kRememberedEvents = 30;

const QStringList kPanels = {QStringLiteral("sWindow"), QStringLiteral("numberWindow"),
    QStringLiteral("aboutWindow"), QStringLiteral("controlPanel"),
    QStringLiteral("sqlSettingsWnd")};

// Folders and web pages must not actually be opened.
const QStringList kSchemes = {QStringLiteral("file"), QStringLiteral("http"),
    QStringLiteral("https"), QStringLiteral("mailto")};

QDateTime g_now;

QStringList entries(const QString &folder)
{
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

// The resources of the process by name, so that a difference shows which ones were not released.
QStringList threads()
{
    QStringList names;
    const QStringList ids = entries(QStringLiteral("/proc/self/task"));
    for (const QString &id : ids) {
        QFile file(QStringLiteral("/proc/self/task/%1/comm").arg(id));
        if (file.open(QIODevice::ReadOnly)) {
            names << QString::fromUtf8(file.readAll().trimmed());
        }
    }
    names.sort();
    return names;
}

QStringList handles()
{
    QStringList targets;
    const QDir folder(QStringLiteral("/proc/self/fd"));
    // A log file inherited from the parent process may be renamed or deleted during the test.
    const QRegularExpression variablePart(QStringLiteral("[0-9]+|(\\.tmp)?( \\(deleted\\))?$"));
    const QStringList numbers = entries(folder.path());
    for (const QString &number : numbers) {
        const QString target = QFile(folder.filePath(number)).symLinkTarget();
        // The descriptor used for the listing is already closed. Numbers may differ.
        if (!target.isEmpty()) {
            targets << QString(target).remove(variablePart);
        }
    }
    targets.sort();
    return targets;
}

QStringList added(QStringList now, const QStringList &before)
{
    for (const QString &one : before) {
        now.removeOne(one);
    }
    return now;
}

int number(const char *variable, int fallback)
{
    bool given = false;
    const int value = qEnvironmentVariableIntValue(variable, &given);
    return given ? value : fallback;
}

QByteArray reading(int first, int second)
{
    const auto channel = first % 2 == 0 ? ork2::Channel::Main : ork2::Channel::Reserve;
    return ork2::readingFrame({channel, first, second});
}

// Returns whether the status line has shown the text, even if other texts followed.
bool wasShown(const QSignalSpy &texts, const QString &part)
{
    return std::any_of(texts.begin(), texts.end(),
        [&part](const QVariantList &text) { return text.first().toString().contains(part); });
}

} // namespace

class tst_user : public QObject
{
    Q_OBJECT

public Q_SLOTS:
    void opened(const QUrl &) { ++m_opened; }

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void cleanupTestCase();

    void randomEvents_leaveNothingBehind();
    void ending_anyState_leavesNothingBehind_data();
    void ending_anyState_leavesNothingBehind();

private:
    [[nodiscard]] QObject *item(const char *id) const;
    [[nodiscard]] QQuickWindow *panel(const QString &name) const
    {
        return m_window->findChild<QQuickWindow *>(name);
    }
    [[nodiscard]] MainBackEndProbe probe() const { return MainBackEndProbe(m_terminal->backEnd()); }
    [[nodiscard]] QList<QQuickWindow *> shownWindows() const;
    [[nodiscard]] bool portIsOpen() const;
    void build();
    void tearDown();
    void open(const QString &name) const;
    void openMenu() const;
    void press(bool start) const { item("startButton")->setProperty("checked", start); }
    void sendRandomBytes();
    void startAndStopInBursts();
    void settle();
    void measureOnce();

    void act();
    void click(QQuickWindow *window);
    void type(QQuickWindow *window);
    void window(QQuickWindow *window);
    void line();
    void controller();
    [[nodiscard]] QPoint randomPosition(const QQuickWindow *window);
    template <typename List> [[nodiscard]] auto randomElement(const List &list)
    {
        return list.at(m_random->between(0, static_cast<int>(list.size()) - 1));
    }

    std::unique_ptr<ork2::SeededRandom> m_random;
    ork2::PseudoTerminal m_line;
    std::unique_ptr<QTemporaryDir> m_base;
    std::unique_ptr<LogCapture> m_log;
    TestTerminal m_terminal;
    QQuickWindow *m_window = nullptr;
    QString m_port;
    QStringList m_lastEvents;
    QStringList m_threads;
    QStringList m_handles;
    int m_opened = 0;
    int m_toggles = 0;
    qint64 m_toggleMs = 0;
};

void tst_user::initTestCase()
{
    for (const QString &scheme : kSchemes) {
        QDesktopServices::setUrlHandler(scheme, this, "opened");
    }
    // A hidden window is shown again, as from the tray icon.
    QGuiApplication::setQuitOnLastWindowClosed(false);
    profile::requirePrivateStore();
    m_base = std::make_unique<QTemporaryDir>();
    const QString folder = QCoreApplication::applicationDirPath() + QStringLiteral("/settings");
    QVERIFY(QDir().mkpath(folder));
    QFile file(folder + QStringLiteral("/settings.txt"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("\nPathToData = \"" + m_base->path().toUtf8() + "\"\n");
    file.close();

    // Create the resources that Qt creates once and keeps.
    init();
    for (const QString &name : kPanels) {
        open(name);
        QVERIFY(QTest::qWaitForWindowExposed(panel(name), kTimeoutMs));
        panel(name)->close();
    }
    measureOnce();
    cleanup();
    m_threads = threads();
    m_handles = handles();
}

void tst_user::cleanupTestCase()
{
    QFile::remove(
        QCoreApplication::applicationDirPath() + QStringLiteral("/settings/settings.txt"));
    for (const QString &scheme : kSchemes) {
        QDesktopServices::unsetUrlHandler(scheme);
    }
    if (m_toggleMs > 0) {
        std::printf("Start and Stop: %d times, %lld a second; folders and pages opened: %d\n",
            m_toggles, static_cast<long long>(m_toggles * 1000LL / m_toggleMs), m_opened);
    }
}

void tst_user::init()
{
    QVERIFY(m_line.open());
    m_port = m_line.path();
    profile::clear();
    profile::store(ork2::kNamePath, m_base->path());
    profile::store(ork2::kPortToShow, m_port);
    noReplyCounter.storeRelaxed(0);
    m_lastEvents.clear();
    m_log = std::make_unique<LogCapture>();
    build();
}

void tst_user::cleanup()
{
    if (m_terminal) {
        tearDown();
    }
    m_line.close();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

void tst_user::build()
{
    m_terminal = makeTestTerminal();
    m_window = mainWindow(*m_terminal);
    QVERIFY(m_window != nullptr);
    QVERIFY(QTest::qWaitForWindowExposed(m_window, kTimeoutMs));
    g_now = QDateTime(QDate(2026, 11, 15), QTime(12, 33, 30, 500));
    probe().setClock([] { return g_now; });
}

void tst_user::tearDown()
{
    m_terminal.reset();
    m_window = nullptr;
}

QObject *tst_user::item(const char *id) const
{
    return documentItem(*m_window, id);
}

QList<QQuickWindow *> tst_user::shownWindows() const
{
    QList<QQuickWindow *> shown;
    const QWindowList windows = QGuiApplication::topLevelWindows();
    for (QWindow *window : windows) {
        auto *quick = qobject_cast<QQuickWindow *>(window);
        if (quick != nullptr && quick->isVisible() && !quick->size().isEmpty()) {
            shown << quick;
        }
    }
    return shown;
}

bool tst_user::portIsOpen() const
{
    bool isOpen = false;
    ComPort *port = probe().comPort();
    QMetaObject::invokeMethod(
        port, [&] { isOpen = port->port().isOpen(); }, Qt::BlockingQueuedConnection);
    return isOpen;
}

void tst_user::open(const QString &name) const
{
    QMetaObject::invokeMethod(m_window, "open",
        Q_ARG(QVariant, QVariant::fromValue(static_cast<QObject *>(panel(name)))));
}

void tst_user::openMenu() const
{
    QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, QPoint(20, 10));
}

void tst_user::sendRandomBytes()
{
    if (!m_line.isOpen()) {
        return;
    }
    static const QByteArrayList broken = {"H077777777\r", "H088888888\r", "H099999999\r",
        "H000000000\r", "H1123", "\r", "42345\r", "H11234234", "HHHHHHHHHHH",
        "\r\r\r\r\r\r\r\r\r\r\r", "H1-1.e9999\r", QByteArray(300, '\xff'), QByteArray(11, '\0'),
        "G112342345\r"};
    const QByteArray bytes = m_random->oneIn(3)
        ? randomElement(broken)
        : reading(m_random->between(0, 9999), m_random->between(0, 9999));
    Q_UNUSED(m_line.write(bytes))
}

void tst_user::startAndStopInBursts()
{
    QElapsedTimer clock;
    int toggled = 0;
    QTimer toggle;
    toggle.setTimerType(Qt::PreciseTimer);
    // Rendering a frame takes longer than the interval; the missing toggles follow afterwards.
    toggle.callOnTimeout([&] {
        while (toggled < kTogglesInBurst && clock.elapsed() >= toggled) {
            press(!item("startButton")->property("checked").toBool());
            ++toggled;
        }
    });
    QTimer frames;
    frames.callOnTimeout([this] { sendRandomBytes(); });
    clock.start();
    toggle.start(kToggleIntervalMs);
    frames.start(kFrameIntervalMs);
    while (toggled < kTogglesInBurst) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    m_toggleMs += clock.elapsed();
    m_toggles += kTogglesInBurst;
}

QPoint tst_user::randomPosition(const QQuickWindow *window)
{
    return {m_random->between(0, window->width() - 1), m_random->between(0, window->height() - 1)};
}

void tst_user::click(QQuickWindow *window)
{
    static const std::array buttons = {
        Qt::LeftButton, Qt::LeftButton, Qt::LeftButton, Qt::RightButton, Qt::MiddleButton};
    const Qt::MouseButton button = randomElement(buttons);
    const QPoint place = randomPosition(window);
    switch (m_random->between(0, 5)) {
    case 0:
        QTest::mouseDClick(window, button, Qt::NoModifier, place);
        break;
    case 1:
        QTest::mousePress(window, button, Qt::NoModifier, place);
        for (int i = 0; i < 5; ++i) {
            QTest::mouseMove(window, randomPosition(window));
        }
        QTest::mouseRelease(window, button, Qt::NoModifier, randomPosition(window));
        break;
    case 2: {
        QWheelEvent wheel(place, window->mapToGlobal(place), QPoint(),
            QPoint(0, m_random->between(-3, 3) * 120), Qt::NoButton, Qt::NoModifier,
            Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(window, &wheel);
        break;
    }
    default:
        QTest::mouseClick(window, button, Qt::NoModifier, place);
    }
}

void tst_user::type(QQuickWindow *window)
{
    static const std::array keys = {Qt::Key_Tab, Qt::Key_Tab, Qt::Key_Backtab, Qt::Key_Return,
        Qt::Key_Enter, Qt::Key_Space, Qt::Key_Escape, Qt::Key_Up, Qt::Key_Down, Qt::Key_Left,
        Qt::Key_Right, Qt::Key_Home, Qt::Key_End, Qt::Key_Backspace, Qt::Key_Delete, Qt::Key_F4,
        Qt::Key_F10, Qt::Key_A, Qt::Key_V, Qt::Key_Z, Qt::Key_7};
    static const std::array modifiers = {Qt::NoModifier, Qt::NoModifier, Qt::NoModifier,
        Qt::ShiftModifier, Qt::ControlModifier, Qt::AltModifier};
    QTest::keyClick(window, randomElement(keys), randomElement(modifiers));
}

void tst_user::window(QQuickWindow *window)
{
    switch (m_random->between(0, 9)) {
    case 0:
        window->close();
        break;
    case 1:
        window->showMinimized();
        break;
    case 2:
        window->setPosition(m_random->between(-500, 1200), m_random->between(-500, 1000));
        break;
    case 3:
        window->resize(m_random->between(1, 2000), m_random->between(1, 2000));
        break;
    case 4:
        m_window->show(); // as the tray icon does
        m_window->raise();
        break;
    case 5:
        window->showNormal();
        break;
    case 6: // a menu and one of its entries; the window may be smaller than the menu
        for (const int y : {10, m_random->between(22, 70)}) {
            const QPoint place(m_random->between(0, 220), y);
            if (QRect(QPoint(), m_window->size()).contains(place)) {
                QTest::mouseClick(m_window, Qt::LeftButton, Qt::NoModifier, place);
            }
        }
        break;
    default:
        open(randomElement(kPanels));
    }
}

void tst_user::line()
{
    switch (m_random->between(0, 7)) {
    case 0:
        m_line.close();
        break;
    case 1:
        QVERIFY(m_line.open());
        m_port = m_line.path();
        break;
    case 2:
        m_port = randomElement(QStringList{QString(), QStringLiteral("/dev/no-such-port"),
            QStringLiteral("/dev/null"), QStringLiteral("/tmp"), m_line.path(), m_line.path()});
        break;
    default:
        for (int i = m_random->between(1, 20); i > 0; --i) {
            sendRandomBytes();
        }
    }
}

void tst_user::controller()
{
    switch (m_random->between(0, 6)) {
    case 0:
        g_now = g_now.addSecs(m_random->between(-100, 10000));
        break;
    case 1:
        g_now.setTime(QTime(m_random->between(0, 23), m_random->between(0, 59), 0, 500));
        probe().tickSave();
        break;
    case 2:
        noReplyCounter.storeRelaxed(30);
        probe().tickWatchdog();
        break;
    case 3:
        m_terminal->backEnd().changeRangeX();
        break;
    case 4:
        m_terminal->backEnd().removeGPoints();
        break;
    default:
        probe().tickPlot();
    }
}

void tst_user::act()
{
    const QList<QQuickWindow *> shown = shownWindows();
    if (shown.isEmpty()) {
        m_window->show();
        return;
    }
    QQuickWindow *where = randomElement(shown);
    const int kind = m_random->between(1, 100);
    const auto remember = [this](const char *what, const QString &which) {
        m_lastEvents << QLatin1String(what) + which;
        if (m_lastEvents.size() > kRememberedEvents) {
            m_lastEvents.removeFirst();
        }
    };
    if (kind <= 35) {
        remember("click ", where->title());
        click(where);
    } else if (kind <= 55) {
        remember("key ", where->title());
        type(where);
    } else if (kind <= 75) {
        remember("window ", where->title());
        window(where);
    } else if (kind <= 85) {
        remember("line ", m_port);
        line();
    } else if (kind <= 92) {
        remember("controller", QString());
        controller();
    } else {
        remember("start or stop ", m_port);
        press(!item("startButton")->property("checked").toBool());
    }
    // The settings window may have selected a port of this machine, which no test must use.
    currentPortName = m_port;
    QCoreApplication::processEvents();
}

// Stops the measurement and closes all other windows, so that no additional resources are in use.
void tst_user::settle()
{
    press(false);
    for (const QString &name : kPanels) {
        panel(name)->close();
    }
    m_window->showNormal();
    QTest::keyClick(m_window, Qt::Key_Escape);
    QTRY_VERIFY_WITH_TIMEOUT(!portIsOpen(), kTimeoutMs);
    QCoreApplication::sendPostedEvents();
    // A window that was hidden and is shown beside its minimised dialog is minimised by the window
    // manager, which Qt does not notice. In the program the main window is never hidden.
    constexpr int kShowTimeoutMs = 5000;
    for (int attempt = 0; attempt < kTimeoutMs / kShowTimeoutMs && !m_window->isExposed();
         ++attempt) {
        if (!QTest::qWaitForWindowExposed(m_window, kShowTimeoutMs)) {
            m_window->hide();
            m_window->showNormal();
        }
    }
    QVERIFY(QTest::qWaitForWindowExposed(m_window, kTimeoutMs));
}

// Checks that a received frame is shown in the window.
void tst_user::measureOnce()
{
    QVERIFY(m_line.open());
    currentPortName = m_port = m_line.path();
    QSignalSpy texts(&m_terminal->backEnd(), &mainBackEnd::sendCounter);
    press(true);
    QTRY_VERIFY_WITH_TIMEOUT(wasShown(texts, QStringLiteral("Открыт")), kTimeoutMs);
    QVERIFY(m_line.write("H003000400\r") > 0);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_window->property("firstCloudAlt").toString(), QStringLiteral("0300"), kTimeoutMs);
    press(false);
    QTRY_VERIFY_WITH_TIMEOUT(!portIsOpen(), kTimeoutMs);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_window->property("firstCloudAlt").toString(), QStringLiteral("----"), kTimeoutMs);
}

void tst_user::randomEvents_leaveNothingBehind()
{
    const int events = number("ORK2_USER_EVENTS", kDefaultEvents);
    const int seed = number("ORK2_USER_SEED", 1);
    std::printf("%d events, seed %d\n", events, seed);
    std::fflush(stdout);
    m_random = std::make_unique<ork2::SeededRandom>(static_cast<quint32>(seed));
    for (const QString &name : kPanels) {
        open(name);
        QVERIFY(QTest::qWaitForWindowExposed(panel(name), kTimeoutMs));
    }
    settle();
    const QStringList threadsBefore = threads();
    const QStringList handlesBefore = handles();
    for (int done = 0; done < events;) {
        for (int i = 0; i < kEventsInRound && done < events; ++i, ++done) {
            act();
        }
        startAndStopInBursts();
        settle();
        const QByteArray when = QByteArray::number(done) + " events, seed "
            + QByteArray::number(seed) + ", last: " + m_lastEvents.join(u"; ").toUtf8();
        const QByteArray warnings = m_log->warnings().join(u'\n').toUtf8();
        QVERIFY2(warnings.isEmpty(), warnings + " after " + when);
        measureOnce();
        const auto left = [&] {
            return added(threads(), threadsBefore) + added(handles(), handlesBefore);
        };
        const bool none = QTest::qWaitFor([&] { return left().isEmpty(); }, kTimeoutMs);
        QVERIFY2(none, left().join(u' ').toUtf8() + " not released after " + when);
    }
}

void tst_user::ending_anyState_leavesNothingBehind_data()
{
    QTest::addColumn<QString>("state");
    for (const char *state : {"stopped", "port open", "measuring", "right after Start",
             "right after Stop", "port missing", "line unplugged", "instrument lost", "menu open",
             "window hidden", "window minimised"}) {
        QTest::newRow(state) << QString::fromLatin1(state);
    }
    for (const QString &name : kPanels) {
        QTest::newRow(name.toUtf8()) << name;
    }
}

void tst_user::ending_anyState_leavesNothingBehind()
{
    QFETCH(QString, state);
    const auto startAndAwait = [this](const QString &text) {
        QSignalSpy texts(&m_terminal->backEnd(), &mainBackEnd::sendCounter);
        press(true);
        QTRY_VERIFY(wasShown(texts, text));
    };
    const QString opened = QStringLiteral("Открыт");
    if (kPanels.contains(state)) {
        open(state);
        QVERIFY(QTest::qWaitForWindowExposed(panel(state), kTimeoutMs));
    } else if (state == u"port open") {
        startAndAwait(opened);
    } else if (state == u"measuring" || state == u"line unplugged" || state == u"instrument lost") {
        startAndAwait(opened);
        QVERIFY(m_line.write("H003000400\r") > 0);
        QTRY_COMPARE(m_window->property("firstCloudAlt").toString(), QStringLiteral("0300"));
        if (state == u"line unplugged") {
            m_line.close();
            QTRY_VERIFY(!portIsOpen());
        } else if (state == u"instrument lost") {
            noReplyCounter.storeRelaxed(30);
            probe().tickWatchdog();
        } else {
            while (m_line.write("H003000400\r") > 0) { } // exits while receiving frames
        }
    } else if (state == u"right after Start") {
        press(true);
    } else if (state == u"right after Stop") {
        press(true);
        press(false);
    } else if (state == u"port missing") {
        currentPortName = QStringLiteral("/dev/no-such-port");
        startAndAwait(QStringLiteral("]:\t"));
    } else if (state == u"menu open") {
        openMenu();
        QObject *menu = m_window->findChild<QObject *>(QStringLiteral("fileMenu"));
        QVERIFY(menu != nullptr);
        QTRY_VERIFY(menu->property("opened").toBool());
    } else if (state == u"window hidden") {
        m_window->close();
        QTRY_VERIFY(!m_window->isVisible());
    } else if (state == u"window minimised") {
        m_window->showMinimized();
    }
    tearDown();
    m_line.close();
    const auto left = [&] { return added(threads(), m_threads) + added(handles(), m_handles); };
    QVERIFY2(QTest::qWaitFor([&] { return left().isEmpty(); }, kTimeoutMs),
        left().join(u' ').toUtf8() + " not released");
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_user test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_user.moc"
