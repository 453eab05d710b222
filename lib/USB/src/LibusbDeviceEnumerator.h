#pragma once

#include "USB/LibusbDeviceEnumeratorListener.h"

#include <QFutureWatcher>
#include <QObject>

#include <map>
#include <utility>

namespace USB {

/// Keeps the table of attached devices of the units' vendor and tells its listeners when one
/// appears or disappears. A notice of the platform about one of the units' product ids starts a
/// listing of the whole bus on a pool thread, after a delay in which the unit can settle; the
/// difference to the table goes to the listeners, removals first. A notice that comes while a
/// listing runs is dropped. Lives on the main thread; so do the listener calls. Destruction waits
/// for a running listing.
class LibusbDeviceEnumerator : public QObject
{
    Q_OBJECT

public:
    static constexpr int defaultListingDelayMs = 2000;

    explicit LibusbDeviceEnumerator(QObject* parent = nullptr);
    ~LibusbDeviceEnumerator() override;

    /// Opens the libusb session, makes the platform's notifier and starts the first listing. Once,
    /// with the application window.
    /// @return false, with a log line, on a second call, without a window, and when the session
    ///         cannot be opened; the enumerator is then as it was before.
    Q_INVOKABLE bool init(QObject* window);

    /// Appends a listener; not owned, and must live as long as notices are handled.
    void addListener(LibusbDeviceEnumeratorListener* listener);

    /// Starts a listing unless one is running. Zeros are wildcards.
    void requestEnumerateUSBDevices(quint16 vid, quint16 pid);

    /// Milliseconds between a request and the listing, for listings started from now on.
    void setListingDelay(int milliseconds) { m_listingDelayMs = milliseconds; }

public slots:
    void on_USBNotifier_Attachment(quint16 vid, quint16 pid);
    void on_USBNotifier_Removal(quint16 vid, quint16 pid);
    void on_QFutureWatcher_finished();

private:
    enum State
    {
        NotInitialized = 0,
        Idle = 1,
        Enumerating = 2,
        WindingDown = 3
    };
    using Key = std::pair<int, int>; // bus number, device address
    using DeviceTable = std::map<Key, P_LibUsbDevice>;
    using Listing = QFutureWatcher<QList<P_LibUsbDevice>>;

    void enumerateForNotice(quint16 vid, quint16 pid);
    void replaceTable(const DeviceTable& fresh);
    void offerRemoved(const P_LibUsbDevice& device);
    void offerAdded(const P_LibUsbDevice& device);

    int m_state = NotInitialized;
    Listing* m_watcher = nullptr; // child of this object
    DeviceTable m_devices;
    QList<LibusbDeviceEnumeratorListener*> m_listeners;
    int m_listingDelayMs = defaultListingDelayMs;
};

} // namespace USB
