// SPDX-License-Identifier: GPL-3.0-or-later
#include "terminallink.h"

#include <QCoreApplication>
#include <QFile>

#include <filesystem>
#include <utility>

namespace ork2 {

namespace {

std::filesystem::path nativePath(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

} // namespace

TerminalLink::TerminalLink(QString path)
    : m_path(std::move(path))
{ }

TerminalLink::~TerminalLink()
{
    remove();
}

bool TerminalLink::pointTo(const QString &target)
{
    namespace fs = std::filesystem;
    const fs::path link = nativePath(m_path);
    std::error_code error;
    const fs::file_status status = fs::symlink_status(link, error);
    if (fs::exists(status) && !fs::is_symlink(status)) {
        m_errorString = QStringLiteral("cannot link %1: it exists and is no link").arg(m_path);
        return false;
    }

    const fs::path fresh =
        nativePath(QStringLiteral("%1.%2").arg(m_path).arg(QCoreApplication::applicationPid()));
    fs::remove(fresh, error);
    fs::create_symlink(nativePath(target), fresh, error);
    if (!error) {
        fs::rename(fresh, link, error);
    }
    if (error) {
        m_errorString = QStringLiteral("cannot link %1: %2")
                            .arg(m_path, QString::fromStdString(error.message()));
        fs::remove(fresh, error);
        return false;
    }
    m_target = target;
    return true;
}

void TerminalLink::remove()
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path link = nativePath(m_path);
    if (!m_target.isEmpty() && fs::read_symlink(link, error) == nativePath(m_target)) {
        fs::remove(link, error);
    }
    m_target.clear();
}

} // namespace ork2
