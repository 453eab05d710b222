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
    explicit USBException(const QString& message, int errorCode = 0)
        : std::runtime_error(message.toStdString())
        , m_errorCode(errorCode)
    {
    }

    QString message() const { return QString::fromUtf8(what()); }

    /// libusb's error, one of libusb_error; 0 if the failure is not libusb's.
    int errorCode() const { return m_errorCode; }

private:
    int m_errorCode;
};

} // namespace USB
