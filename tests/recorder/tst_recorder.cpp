// SPDX-License-Identifier: GPL-3.0-or-later
// The real program: its messages to the service manager and the journal, signals, exit codes, and
// what it links.
#include "filedescriptor.h"
#include "pseudoterminal.h"
#include "timeout.h"

#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <csignal>
#include <fcntl.h>
#include <memory>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

const QByteArray kFrame = QByteArrayLiteral("H004201350\r");
constexpr int kReadingMs = 200; // the instrument of the test is faster than the real one
constexpr int kExitConfiguration = 78;
constexpr int kExitUsage = 64;

// Stands in for the service manager.
class NotifySocket
{
public:
    explicit NotifySocket(const QString &path)
    {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, path.toLocal8Bit().constData(), sizeof(address.sun_path));
        m_bound = ::bind(m_socket, reinterpret_cast<sockaddr *>(&address), sizeof(address)) == 0;
    }
    ~NotifySocket() { ::close(m_socket); }
    Q_DISABLE_COPY_MOVE(NotifySocket)

    [[nodiscard]] bool isBound() const { return m_bound; }
    // All messages since the last call.
    [[nodiscard]] QByteArrayList take()
    {
        QByteArrayList messages;
        QByteArray buffer(4096, '\0');
        ssize_t length = 0;
        while ((length = ::recv(m_socket, buffer.data(), buffer.size(), MSG_DONTWAIT)) > 0) {
            messages << buffer.first(length);
        }
        return messages;
    }

private:
    int m_socket = ::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    bool m_bound = false;
};

} // namespace

class tst_recorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void program_linksNoWindow();
    void wrongConfiguration_exits78_withASentence();
    void wrongOption_exits64();
    void help_isRussian();
    void check_saysWhatWouldBeDone();
    void service_reportsItsState();
    void watchdog_isFed_whileTheProgramRuns();
    void journal_linesHavePriorities();
    void hangup_readsTheConfigurationAgain();
    void unplugged_isBackAtOnce();
    void killed_startsAgain_withTheSamePort();

private:
    void configure(const QString &more = {});
    void plugIn();
    void start(const QProcessEnvironment &environment = QProcessEnvironment::systemEnvironment());
    void waitForError(const QString &text);
    [[nodiscard]] QString path(const QString &name) const { return m_folder->filePath(name); }
    [[nodiscard]] int runToEnd(const QStringList &arguments);

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QProcess> m_process;
    std::unique_ptr<ork2::PseudoTerminal> m_line;
    QTimer m_readings;
    QString m_output;
    QString m_errors;
};

void tst_recorder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_process = std::make_unique<QProcess>();
    m_line = std::make_unique<ork2::PseudoTerminal>();
    m_output.clear();
    m_errors.clear();
    configure();
    connect(
        &m_readings, &QTimer::timeout, m_process.get(), [this] { (void)m_line->write(kFrame); });
}

void tst_recorder::cleanup()
{
    m_readings.stop();
    if (m_process->state() != QProcess::NotRunning) {
        m_process->terminate();
        if (!m_process->waitForFinished(kTimeoutMs)) {
            m_process->kill();
            m_process->waitForFinished();
            QFAIL("The recorder did not end");
        }
        QCOMPARE(m_process->exitStatus(), QProcess::NormalExit);
        QCOMPARE(m_process->exitCode(), 0);
    }
    m_line.reset();
}

void tst_recorder::configure(const QString &more)
{
    QFile file(path(QStringLiteral("r.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("[line]\nport=%1\n[files]\nunit=7\nfolder=%2\n%3")
                   .arg(path(QStringLiteral("port")), m_folder->path(), more)
                   .toUtf8());
}

void tst_recorder::plugIn()
{
    QVERIFY(m_line->open());
    const QString link = path(QStringLiteral("port"));
    QFile::remove(link);
    QVERIFY(QFile::link(m_line->path(), link));
    m_readings.start(kReadingMs);
}

void tst_recorder::start(const QProcessEnvironment &environment)
{
    m_process->setProcessEnvironment(environment);
    m_process->start(
        QStringLiteral(RECORDER), {QStringLiteral("--config"), path(QStringLiteral("r.conf"))});
    QVERIFY(m_process->waitForStarted(kTimeoutMs));
}

void tst_recorder::waitForError(const QString &text)
{
    const auto found = [this, &text] {
        m_errors += QString::fromUtf8(m_process->readAllStandardError());
        return m_errors.contains(text);
    };
    QTRY_VERIFY2_WITH_TIMEOUT(found(), qPrintable(text + u'\n' + m_errors), kTimeoutMs);
}

int tst_recorder::runToEnd(const QStringList &arguments)
{
    m_process->start(QStringLiteral(RECORDER), arguments);
    m_process->waitForFinished(kTimeoutMs);
    m_output = QString::fromUtf8(m_process->readAllStandardOutput());
    m_errors = QString::fromUtf8(m_process->readAllStandardError());
    return m_process->exitCode();
}

void tst_recorder::program_linksNoWindow()
{
    QProcess ldd;
    ldd.start(QStringLiteral("ldd"), {QStringLiteral(RECORDER)});
    QVERIFY(ldd.waitForFinished(kTimeoutMs));
    const QString libraries = QString::fromUtf8(ldd.readAllStandardOutput());
    QStringList found;
    auto names = QRegularExpression(QStringLiteral("lib(Qt6\\w+)\\.so")).globalMatch(libraries);
    while (names.hasNext()) {
        const QString name = names.next().captured(1);
        if (!found.contains(name)) {
            found << name;
        }
    }
    found.sort();
    QCOMPARE(found,
        (QStringList{
            QStringLiteral("Qt6Core"), QStringLiteral("Qt6SerialPort"), QStringLiteral("Qt6Sql")}));
}

void tst_recorder::wrongConfiguration_exits78_withASentence()
{
    configure(QStringLiteral("unit=x\n"));
    const QString file = path(QStringLiteral("r.conf"));
    QCOMPARE(runToEnd({QStringLiteral("--config"), file}), kExitConfiguration);
    QVERIFY2(m_errors.contains(file), qPrintable(m_errors));
    QCOMPARE(m_errors.count(u'\n'), 1);
    QCOMPARE(runToEnd({QStringLiteral("--check"), QStringLiteral("--config"), file}),
        kExitConfiguration);
}

void tst_recorder::wrongOption_exits64()
{
    QCOMPARE(runToEnd({QStringLiteral("--confg"), QStringLiteral("x")}), kExitUsage);
    QCOMPARE(runToEnd({QStringLiteral("x")}), kExitUsage);
    QVERIFY(m_errors.contains(QLatin1String("--help")));
}

void tst_recorder::help_isRussian()
{
    QCOMPARE(runToEnd({QStringLiteral("--help")}), 0);
    QVERIFY(m_output.startsWith(QStringLiteral("Использование: ork2-recorder")));
    QVERIFY(m_output.contains(QLatin1String("/etc/ork2-recorder.conf")));
}

void tst_recorder::check_saysWhatWouldBeDone()
{
    const QStringList arguments{
        QStringLiteral("--check"), QStringLiteral("--config"), path(QStringLiteral("r.conf"))};
    QCOMPARE(runToEnd(arguments), 1);
    QVERIFY2(m_output.contains(QStringLiteral("! Сейчас порта нет")), qPrintable(m_output));
    plugIn();
    QCOMPARE(runToEnd(arguments), 0);
    QVERIFY2(m_output.contains(QStringLiteral("Порт открывается")), qPrintable(m_output));
    QVERIFY(m_output.contains(m_folder->path() + QStringLiteral("/Data/ORK-2 N7/")));
    QVERIFY(!QFile::exists(path(QStringLiteral("Data")))); // nothing is left behind
    const QStringList files =
        QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    QCOMPARE(files, (QStringList{QStringLiteral("port"), QStringLiteral("r.conf")}));
    QFile(path(QStringLiteral("Data"))).open(QIODevice::WriteOnly); // in place of the folder
    QCOMPARE(runToEnd(arguments), 0);
}

void tst_recorder::service_reportsItsState()
{
    const QString socket = path(QStringLiteral("notify"));
    NotifySocket manager(socket);
    QVERIFY(manager.isBound());
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NOTIFY_SOCKET"), socket);
    // Lines of today from before the start are counted.
    QVERIFY(QDir(m_folder->path()).mkpath(QStringLiteral("Data/ORK-2 N7")));
    QFile today(path(QStringLiteral("Data/ORK-2 N7/"))
        + QDate::currentDate().toString(u"yyyy.MM.dd") + QStringLiteral(".txt"));
    QVERIFY(today.open(QIODevice::WriteOnly));
    today.write("heading\r\nheading\r\n\r\nline\r\nline");
    today.close();
    plugIn();
    start(environment);
    QByteArray told;
    const auto tells = [&](const QByteArray &text) {
        told += manager.take().join('\n') + '\n';
        return told.contains(text);
    };
    QTRY_VERIFY_WITH_TIMEOUT(tells("READY=1"), kTimeoutMs);
    QTRY_VERIFY_WITH_TIMEOUT(
        tells("STATUS=" + QStringLiteral("Последнее измерение: 0420 и 1350").toUtf8()), kTimeoutMs);
    QVERIFY(told.contains(QStringLiteral("За сегодня строк ").toUtf8()));
    QVERIFY(!told.contains(QStringLiteral("За сегодня строк 0").toUtf8()));
    QVERIFY(!told.contains("WATCHDOG")); // not asked for
    m_process->terminate();
    QVERIFY(m_process->waitForFinished(kTimeoutMs));
    QVERIFY(tells("STOPPING=1"));
    QVERIFY(m_process->readAllStandardOutput().isEmpty());
}

void tst_recorder::watchdog_isFed_whileTheProgramRuns()
{
    const QString socket = path(QStringLiteral("notify"));
    NotifySocket manager(socket);
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("NOTIFY_SOCKET"), socket);
    environment.insert(QStringLiteral("WATCHDOG_USEC"), QStringLiteral("3000000"));
    plugIn();
    start(environment);
    qsizetype fed = 0;
    const auto isFed = [&](qsizetype times) {
        fed += manager.take().count("WATCHDOG=1");
        return fed >= times;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isFed(3), kTimeoutMs);
    // A stopped process does not feed it.
    ::kill(static_cast<pid_t>(m_process->processId()), SIGSTOP);
    (void)isFed(0);
    const qsizetype before = fed;
    QTest::qWait(2000); // two intervals; there is no event to wait for
    QVERIFY(!isFed(before + 1));
    ::kill(static_cast<pid_t>(m_process->processId()), SIGCONT);
    QTRY_VERIFY_WITH_TIMEOUT(isFed(before + 1), kTimeoutMs);
}

void tst_recorder::journal_linesHavePriorities()
{
    // The error output is the stream that the variable names, as under a service manager.
    QFile log(path(QStringLiteral("log")));
    QVERIFY(log.open(QIODevice::ReadWrite));
    QProcess shell;
    shell.start(QStringLiteral("sh"),
        {QStringLiteral("-c"),
            QStringLiteral(
                "JOURNAL_STREAM=$(stat -c %d:%i \"$1\") exec \"$2\" --config \"$3\" 2>\"$1\""),
            QStringLiteral("sh"), log.fileName(), QStringLiteral(RECORDER),
            path(QStringLiteral("r.conf"))});
    QVERIFY(shell.waitForStarted(kTimeoutMs));
    QString text;
    const auto has = [&](const QString &line) {
        text += QString::fromUtf8(log.readAll());
        return text.contains(line);
    };
    QTRY_VERIFY_WITH_TIMEOUT(has(QStringLiteral("<3>Измерений нет: устройства ")), kTimeoutMs);
    QVERIFY(text.startsWith(QStringLiteral("<6>Работаю: порт ")));
    plugIn();
    QTRY_VERIFY_WITH_TIMEOUT(has(QStringLiteral("<5>Измерения снова идут. Перерыв ")), kTimeoutMs);
    shell.terminate();
    QVERIFY(shell.waitForFinished(kTimeoutMs));
    QVERIFY(has(QStringLiteral("<6>Работа закончена.")));
}

void tst_recorder::hangup_readsTheConfigurationAgain()
{
    plugIn();
    start();
    waitForError(QStringLiteral("Измерения"));
    configure(QStringLiteral("unit=8\n")); // given twice
    ::kill(static_cast<pid_t>(m_process->processId()), SIGHUP);
    waitForError(QStringLiteral("Настройки остались прежними. Файл "));
    QFile file(path(QStringLiteral("r.conf")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(QStringLiteral("[line]\nport=%1\n[files]\nunit=8\nfolder=%2\n")
                   .arg(path(QStringLiteral("port")), m_folder->path())
                   .toUtf8());
    file.close();
    ::kill(static_cast<pid_t>(m_process->processId()), SIGHUP);
    waitForError(QStringLiteral("/Data/ORK-2 N8/"));
}

void tst_recorder::unplugged_isBackAtOnce()
{
    start();
    QElapsedTimer clock;
    qint64 worstMs = 0;
    waitForError(QStringLiteral("Измерений нет: "));
    m_errors.clear();
    for (int time = 0; time < 3; ++time) {
        plugIn();
        clock.restart();
        waitForError(QStringLiteral("Измерения снова идут"));
        worstMs = qMax(worstMs, clock.elapsed());
        m_errors.clear();
        m_readings.stop();
        m_line->close();
        QFile::remove(path(QStringLiteral("port")));
        waitForError(QStringLiteral("Измерений нет: "));
        m_errors.clear();
    }
    qInfo("at most %lld ms from the return of the device to the first reading", worstMs);
    QVERIFY2(worstMs < 12000, qPrintable(QString::number(worstMs)));
}

void tst_recorder::killed_startsAgain_withTheSamePort()
{
    plugIn();
    const ork2::FileDescriptor line(
        ::open(QFile::encodeName(m_line->path()).constData(), O_RDWR | O_NOCTTY | O_CLOEXEC));
    QVERIFY(line.isValid());
    // The lock file of the killed process must not keep the port closed.
    for (int time = 0; time < 3; ++time) {
        // A serial port is no longer reserved after its last user has gone. The simulated one is
        // kept open by the instrument.
        QCOMPARE(::ioctl(line.get(), TIOCNXCL), 0);
        start();
        waitForError(QStringLiteral("Измерения идут"));
        m_errors.clear();
        m_process->kill();
        QVERIFY(m_process->waitForFinished(kTimeoutMs));
    }
}

QTEST_GUILESS_MAIN(tst_recorder)
#include "tst_recorder.moc"
