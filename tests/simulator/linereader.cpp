// SPDX-License-Identifier: GPL-3.0-or-later
#include "linereader.h"

#include <QFile>

#include <fcntl.h>
#include <sys/ioctl.h>

#include <array>
#include <cerrno>

bool LineReader::open(const QString &path)
{
    close();
    m_line = ork2::FileDescriptor(
        ::open(QFile::encodeName(path).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (!m_line.isValid()) {
        return false;
    }
    m_notifier = std::make_unique<QSocketNotifier>(m_line.get(), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &LineReader::readData);
    return true;
}

void LineReader::close()
{
    m_notifier.reset();
    m_line.reset();
}

void LineReader::setReading(bool on)
{
    m_notifier->setEnabled(on);
}

int LineReader::waiting() const
{
    int size = 0;
    return ::ioctl(m_line.get(), FIONREAD, &size) == 0 ? size : -1;
}

bool LineReader::send(const QByteArray &bytes)
{
    return ::write(m_line.get(), bytes.constData(), static_cast<std::size_t>(bytes.size()))
        == bytes.size();
}

void LineReader::readData()
{
    std::array<char, 4096> chunk{};
    const ssize_t size = ::read(m_line.get(), chunk.data(), chunk.size());
    if (size > 0) {
        received.append(chunk.data(), size);
        ++pieces;
    } else if (size == 0 || errno != EAGAIN) {
        ++hangUps;
        m_notifier->setEnabled(false);
    }
}
