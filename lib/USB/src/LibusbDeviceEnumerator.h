// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/LibusbDeviceEnumeratorListener.h"

#include <QFutureWatcher>
#include <QObject>

#include <map>
#include <utility>

namespace USB {

/// Keeps the table of attached devices of the units' vendor and reports arrivals and removals to
/// its listeners. A notification about one of the units' product ids starts a listing of the whole
/// bus on a pool thread, after a delay in which the unit can settle. The listeners then receive the
/// difference to the table, removals first. A notification during a listing is dropped. Main
/// thread, listener calls included. Destruction waits for a running listing.
class LibusbDeviceEnumerator : public QObject
{
    Q_OBJECT

public:
    static constexpr int defaultListingDelayMs = 2000; ///< time for a unit to settle on the bus

    explicit LibusbDeviceEnumerator(QObject* parent = nullptr);
    ~LibusbDeviceEnumerator() override;

    /// Opens the libusb session, creates the platform's notifier and starts the first listing. Call
    /// once, with the application window.
    /// @return false, with a warning in the log, on a second call, without a window, or when the
    ///         session cannot be opened; the enumerator is then unchanged
    Q_INVOKABLE bool init(QObject* window);

    /// Appends a listener. Not owned; must live until the enumerator handles no more events.
    void addListener(LibusbDeviceEnumeratorListener* listener);

    /// Starts a listing unless one is running, which is logged. Zeros are wildcards.
    void requestEnumerateUSBDevices(quint16 vid, quint16 pid);

    /// Milliseconds between a request and its listing. Applies to later requests.
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
    Listing* m_watcher = nullptr; // child of this object; only while a listing runs
    DeviceTable m_devices;
    QList<LibusbDeviceEnumeratorListener*> m_listeners;
    int m_listingDelayMs = defaultListingDelayMs;
};

} // namespace USB
