// SPDX-License-Identifier: GPL-3.0-or-later
#include "terminallink.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace ork2;

class tst_terminallink : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void pointTo_freePath_createsLink();
    void pointTo_existingLink_replacesIt();
    void pointTo_existingFile_isRefused();
    void pointTo_missingFolder_reportsReason();
    void destruction_ownLink_removesIt();
    void destruction_changedLink_keepsIt();

private:
    [[nodiscard]] QStringList folderEntries() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_path;
};

void tst_terminallink::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
    m_path = m_folder->filePath(QStringLiteral("порт 1"));
}

QStringList tst_terminallink::folderEntries() const
{
    return QDir(m_folder->path()).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
}

void tst_terminallink::pointTo_freePath_createsLink()
{
    TerminalLink link(m_path);
    QVERIFY2(link.pointTo(QStringLiteral("/dev/null")), qPrintable(link.errorString()));
    QCOMPARE(QFile::symLinkTarget(m_path), QStringLiteral("/dev/null"));
    QCOMPARE(folderEntries().size(), 1);
}

void tst_terminallink::pointTo_existingLink_replacesIt()
{
    QVERIFY(QFile::link(QStringLiteral("/dev/gone"), m_path));
    TerminalLink link(m_path);
    QVERIFY2(link.pointTo(QStringLiteral("/dev/null")), qPrintable(link.errorString()));
    QCOMPARE(QFile::symLinkTarget(m_path), QStringLiteral("/dev/null"));
    QVERIFY2(link.pointTo(QStringLiteral("/dev/zero")), qPrintable(link.errorString()));
    QCOMPARE(QFile::symLinkTarget(m_path), QStringLiteral("/dev/zero"));
    QCOMPARE(folderEntries().size(), 1);
}

void tst_terminallink::pointTo_existingFile_isRefused()
{
    QFile file(m_path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    {
        TerminalLink link(m_path);
        QVERIFY(!link.pointTo(QStringLiteral("/dev/null")));
        QCOMPARE(link.errorString(),
            QStringLiteral("cannot link %1: it exists and is no link").arg(m_path));
    }
    QVERIFY(file.exists());
    QVERIFY(!QFileInfo(m_path).isSymLink());
}

void tst_terminallink::pointTo_missingFolder_reportsReason()
{
    const QString path = m_folder->filePath(QStringLiteral("none/link"));
    TerminalLink link(path);
    QVERIFY(!link.pointTo(QStringLiteral("/dev/null")));
    QCOMPARE(
        link.errorString(), QStringLiteral("cannot link %1: No such file or directory").arg(path));
}

void tst_terminallink::destruction_ownLink_removesIt()
{
    {
        TerminalLink link(m_path);
        QVERIFY(link.pointTo(QStringLiteral("/dev/null")));
    }
    QCOMPARE(folderEntries(), QStringList());
}

void tst_terminallink::destruction_changedLink_keepsIt()
{
    {
        TerminalLink link(m_path);
        QVERIFY(link.pointTo(QStringLiteral("/dev/null")));
        QVERIFY(QFile::remove(m_path));
        QVERIFY(QFile::link(QStringLiteral("/dev/zero"), m_path));
    }
    QCOMPARE(QFile::symLinkTarget(m_path), QStringLiteral("/dev/zero"));
}

QTEST_GUILESS_MAIN(tst_terminallink)
#include "tst_terminallink.moc"
