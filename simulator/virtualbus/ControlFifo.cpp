// SPDX-License-Identifier: LicenseRef-Proprietary
#include "virtualbus/ControlFifo.h"

#include <fcntl.h>
#include <stdexcept>
#include <sys/stat.h>

namespace VirtualUnit {

ControlFifo::ControlFifo(const QString& path, Bus& bus, std::vector<LabelledUnit>& units)
    : m_lines(bus, units)
{
    const QByteArray name = QFile::encodeName(path);
    if (mkfifo(name, 0600) == 0)
        m_madePath = path;
    struct stat facts = {};
    // Both ends, so that it does not end when a writer closes it.
    if (stat(name, &facts) != 0 || !S_ISFIFO(facts.st_mode) ||
        !m_fifo.open(::open(name, O_RDWR | O_NONBLOCK | O_CLOEXEC), QIODevice::ReadOnly,
                     QFile::AutoCloseHandle))
        throw std::invalid_argument("not a FIFO that can be read: " + name.toStdString());
    m_notifier = std::make_unique<QSocketNotifier>(m_fifo.handle(), QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this] { m_lines.feed(m_fifo.readAll()); });
}

ControlFifo::~ControlFifo()
{
    QFile::remove(m_madePath);
}

} // namespace VirtualUnit
