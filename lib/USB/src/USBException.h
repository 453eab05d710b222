// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QString>

#include <stdexcept>

namespace USB {

/// The exception of the USB layer. Carries the message of the operation that failed, which includes
/// libusb's error name if there is one.
class USBException : public std::runtime_error
{
public:
    explicit USBException(const QString& message)
        : std::runtime_error(message.toStdString())
    {
    }

    QString message() const { return QString::fromUtf8(what()); }
};

} // namespace USB
