#pragma once

#include <QString>

#include <stdexcept>

namespace USB {

/// The one exception of the USB layer. Carries the message of the operation that failed, with
/// libusb's error name in it where there is one.
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
