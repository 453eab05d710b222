// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QObject>

namespace USB {

/// Reports each USB device that arrives or leaves, with its vendor and product id. The signals may
/// come from any thread: connect them queued.
class I_USBNotifier : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// Makes the notifier of the platform that the program was built for, defined in that
    /// notifier's source file. Main thread, with the libusb session open.
    /// @param parent owns the notifier
    /// @param window the application window; Windows delivers its device messages to it
    /// @return null when the platform has no notifier
    static I_USBNotifier* create(QObject* parent, QObject* window);

signals:
    void USBRemovalNotification(quint16 vid, quint16 pid);
    void USBAttachmentNotification(quint16 vid, quint16 pid);
};

} // namespace USB
