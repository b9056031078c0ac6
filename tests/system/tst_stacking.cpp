// SPDX-License-Identifier: GPL-3.0-or-later
// The windows as the window manager sees them: which lies above which, which comes back.
#include "testterminal.h"

#include "logcapture.h"
#include "mainbackendprobe.h"
#include "profile.h"
#include "timeout.h"

#include <QApplication>
#include <QProcess>
#include <QQuickWindow>
#include <QRegularExpression>
#include <QTest>
#include <QTimer>

#include <memory>

namespace {

// The numbers of windows that a property holds.
QList<WId> windowIds(const QStringList &xprop)
{
    QProcess process;
    process.start(QStringLiteral("xprop"), xprop);
    process.waitForFinished(kTimeoutMs);
    static const QRegularExpression number(QStringLiteral("0x[0-9a-f]+"));
    QList<WId> ids;
    auto found = number.globalMatch(QString::fromUtf8(process.readAllStandardOutput()));
    while (found.hasNext()) {
        ids << found.next().captured().toULongLong(nullptr, 0);
    }
    return ids;
}

WId ownerOf(const QWindow *window)
{
    return windowIds({QStringLiteral("-id"), QString::number(window->winId()),
                         QStringLiteral("WM_TRANSIENT_FOR")})
        .value(0);
}

bool isAbove(const QWindow *upper, const QWindow *lower)
{
    const QList<WId> fromBelow =
        windowIds({QStringLiteral("-root"), QStringLiteral("_NET_CLIENT_LIST_STACKING")});
    const qsizetype place = fromBelow.indexOf(lower->winId());
    return place >= 0 && fromBelow.indexOf(upper->winId()) > place;
}

} // namespace

class tst_stacking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void modalWindow_itsOwnerRaised_staysAbove_data();
    void modalWindow_itsOwnerRaised_staysAbove();
    void window_minimised_comesBackWhenOpened_data();
    void window_minimised_comesBackWhenOpened();
    void window_openedAtOnce_staysOpen_data();
    void window_openedAtOnce_staysOpen();
    void independentWindow_mainWindowRaised_liesBehind_data();
    void independentWindow_mainWindowRaised_liesBehind();
    void mainWindow_closed_endsTheProgram();

private:
    [[nodiscard]] QQuickWindow *window(const char *name) const
    {
        return m_window->findChild<QQuickWindow *>(QString::fromLatin1(name));
    }
    void use(const char *opener) const;
    void openBesideMainWindow(const char *name, const char *opener) const;

    std::unique_ptr<LogCapture> m_log;
    TestTerminal m_terminal;
    QQuickWindow *m_window = nullptr;
};

void tst_stacking::init()
{
    profile::clear();
    m_log = std::make_unique<LogCapture>();
    m_terminal = makeTestTerminal();
    m_window = mainWindow(*m_terminal);
    QVERIFY(m_window != nullptr);
}

void tst_stacking::cleanup()
{
    m_terminal.reset();
    const QStringList warnings = m_log->warnings();
    m_log.reset();
    QCOMPARE(warnings.join(u'\n'), QString());
}

// Has the effect of a menu entry or a button.
void tst_stacking::use(const char *opener) const
{
    const QString name = QString::fromLatin1(opener);
    auto *holder = m_window->property("header").value<QObject *>();
    if (name == u"connectionButton") {
        holder = window("controlPanel");
    } else if (name == u"clicked") {
        holder = m_window->findChild<QObject *>(QStringLiteral("buttonCP"));
    }
    QVERIFY(holder != nullptr);
    QVERIFY(QMetaObject::invokeMethod(holder, opener));
}

void tst_stacking::openBesideMainWindow(const char *name, const char *opener) const
{
    QVERIFY(QTest::qWaitForWindowExposed(m_window, kTimeoutMs));
    use(opener);
    QVERIFY(QTest::qWaitForWindowExposed(window(name), kTimeoutMs));
}

void tst_stacking::modalWindow_itsOwnerRaised_staysAbove_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("opener");
    QTest::addColumn<bool>("ofPanel");
    QTest::newRow("settings, menu")
        << QByteArray("sWindow") << QByteArray("buttonSettings") << false;
    QTest::newRow("number, menu") << QByteArray("numberWindow") << QByteArray("buttonNumber")
                                  << false;
    QTest::newRow("settings, control panel")
        << QByteArray("sWindow") << QByteArray("connectionButton") << true;
}

void tst_stacking::modalWindow_itsOwnerRaised_staysAbove()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, opener);
    QFETCH(const bool, ofPanel);
    QQuickWindow *panel = window("controlPanel");
    QVERIFY(QTest::qWaitForWindowExposed(m_window, kTimeoutMs));
    use("clicked");
    QVERIFY(QTest::qWaitForWindowExposed(panel, kTimeoutMs));
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(panel, m_window), kTimeoutMs);
    QWindow *owner = ofPanel ? panel : m_window;
    QWindow *other = ofPanel ? m_window : panel;

    use(opener);
    QWindow *modal = window(name);
    QVERIFY(QTest::qWaitForWindowExposed(modal, kTimeoutMs));
    QCOMPARE(ownerOf(modal), owner->winId());
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(modal, owner), kTimeoutMs);

    // The window manager raises a window that is clicked. The other window shows when this is done.
    other->raise();
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(other, owner), kTimeoutMs);
    owner->raise();
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(owner, other), kTimeoutMs);
    QVERIFY(isAbove(modal, owner));
}

void tst_stacking::window_minimised_comesBackWhenOpened_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("opener");
    QTest::newRow("settings") << QByteArray("sWindow") << QByteArray("buttonSettings");
    QTest::newRow("number") << QByteArray("numberWindow") << QByteArray("buttonNumber");
    QTest::newRow("about") << QByteArray("aboutWindow") << QByteArray("buttonAbout");
    QTest::newRow("control panel") << QByteArray("controlPanel") << QByteArray("clicked");
}

void tst_stacking::window_minimised_comesBackWhenOpened()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, opener);
    openBesideMainWindow(name, opener);
    QQuickWindow *shown = window(name);

    shown->showMinimized();
    QTRY_VERIFY_WITH_TIMEOUT(!shown->isExposed(), kTimeoutMs);
    use(opener);
    QTRY_VERIFY_WITH_TIMEOUT(shown->isExposed(), kTimeoutMs);
    QCOMPARE(shown->visibility(), QWindow::Windowed);
}

void tst_stacking::window_openedAtOnce_staysOpen_data()
{
    window_minimised_comesBackWhenOpened_data();
}

// Before the main window is exposed.
void tst_stacking::window_openedAtOnce_staysOpen()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, opener);
    use(opener);
    QVERIFY(QTest::qWaitForWindowExposed(m_window, kTimeoutMs));
    QVERIFY(QTest::qWaitForWindowExposed(window(name), kTimeoutMs));
    QVERIFY(window(name)->isVisible());
}

void tst_stacking::independentWindow_mainWindowRaised_liesBehind_data()
{
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("opener");
    QTest::newRow("about") << QByteArray("aboutWindow") << QByteArray("buttonAbout");
    QTest::newRow("control panel") << QByteArray("controlPanel") << QByteArray("clicked");
}

void tst_stacking::independentWindow_mainWindowRaised_liesBehind()
{
    QFETCH(const QByteArray, name);
    QFETCH(const QByteArray, opener);
    openBesideMainWindow(name, opener);
    QQuickWindow *shown = window(name);
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(shown, m_window), kTimeoutMs);
    m_window->raise();
    QTRY_VERIFY_WITH_TIMEOUT(isAbove(m_window, shown), kTimeoutMs);
    // No modal window of the main window blocks it.
    QCOMPARE(shown->transientParent(), nullptr);
}

void tst_stacking::mainWindow_closed_endsTheProgram()
{
    for (const char *opener : {"buttonAbout", "clicked", "connectionButton"}) {
        use(opener);
    }
    for (const char *name : {"aboutWindow", "controlPanel", "sWindow"}) {
        QVERIFY(QTest::qWaitForWindowExposed(window(name), kTimeoutMs));
    }
    QTimer::singleShot(0, m_window, [this] { m_window->close(); });
    QTimer::singleShot(kTimeoutMs, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    tst_stacking test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_stacking.moc"
