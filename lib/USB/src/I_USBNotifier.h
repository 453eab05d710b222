#pragma once

#include <QObject>

namespace USB {

/// Turns the platform's news of a USB device arriving or leaving into two signals with the device's
/// vendor and product ids. The signals may come from any thread: connect them queued.
class I_USBNotifier : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

signals:
    void USBRemovalNotification(quint16 vid, quint16 pid);
    void USBAttachmentNotification(quint16 vid, quint16 pid);
};

} // namespace USB
