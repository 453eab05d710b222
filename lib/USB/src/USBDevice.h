// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "USB/I_USBTransfer.h"
#include "USB/LibUsbDevice.h"
#include "USB/USBConfigDescriptor.h"

#include <QByteArray>
#include <QThread>

#include <atomic>
#include <memory>

namespace USB {

/// One USB device: made from the record of a listing, opened by init(), then used for synchronous
/// control transfers on the caller's thread. It is also a thread, "usbThread", that handles libusb
/// events for asynchronous transfers; that thread runs only after start().
///
/// Each failure is logged and thrown as USBException with the operation's message and libusb's
/// error name. A failure that means that the device is gone or out of reach (no device, not found,
/// input/output error, access denied) stops the device first.
///
/// Use from one thread at a time, except abortTransfers().
class USBDevice : public QThread
{
    Q_OBJECT

public:
    /// Keeps the record and reads the device descriptor. Does not open the device.
    /// @throws USBException when the descriptor cannot be read
    USBDevice(P_LibUsbDevice device, int configurationNumber, int interfaceNumber,
              QObject* parent = nullptr);
    ~USBDevice() override;

    /// Reads the standard device descriptor. Called by the constructor.
    /// @throws USBException "device already created" when the device is open
    virtual void create();

    /// Opens the device, activates the configuration, claims the interface and reads the active
    /// configuration descriptor. A failure closes the device.
    /// @throws USBException
    virtual void init();

    /// Ends the event thread, waiting at most 2000 ms, and releases the interface if it is claimed.
    /// May be called repeatedly, and on the event thread itself.
    virtual void stop();

    /// Moves the object to its own thread and starts the event loop there.
    virtual void start();

    /// Vendor and product id as "16d0:0c07".
    virtual QString toString() const;

    /// Stops the device and closes the handle. Later operations throw "USB device not opened".
    void close();

    bool isOpened() const { return m_handle != nullptr; }

    /// Activates the configuration unless it is active.
    /// @throws USBException
    void setConfiguration(int configuration);

    /// Claims the interface and keeps its number.
    /// @throws USBException
    void setInterface(int interface);

    /// Selects an alternate setting of the claimed interface.
    /// @throws USBException
    void setAlternateSetting(int alternate);

    int configurationNumber() const { return m_configurationNumber; }
    int interfaceNumber() const { return m_interfaceNumber; }
    int alternateSetting() const { return m_alternateSetting; }

    const P_LibUsbDevice& record() const { return m_device; }
    const libusb_device_descriptor& descriptor() const { return m_descriptor; }
    const USBConfigDescriptor& configDescriptor() const { return m_configDescriptor; }

    /// A control transfer from the device. Sets the direction bit of @p requestType.
    /// @param timeoutMs milliseconds; 0 waits indefinitely
    /// @return exactly @p length bytes; a short response is padded with zeros
    /// @throws USBException "Control transfer error: %1", "USB device not opened"
    QByteArray controlRead(quint8 requestType, quint8 request, quint16 value, quint16 index,
                           quint16 length, unsigned timeoutMs);

    /// A control transfer to the device. Sends @p requestType unchanged.
    /// @param data at most 65535 bytes
    /// @param timeoutMs milliseconds; 0 waits indefinitely
    /// @return the number of bytes that libusb reports
    /// @throws USBException "control write error: %1", "USB device not opened"
    int controlWrite(quint8 requestType, quint8 request, quint16 value, quint16 index,
                     const QByteArray& data, unsigned timeoutMs);

    /// GET_DESCRIPTOR (USB 2.0, 9.4.3) with a time-out of 1000 ms.
    /// @return exactly @p length bytes, as controlRead()
    /// @throws USBException
    QByteArray getDescriptor(quint8 type, quint8 index, quint16 length);

    /// The string descriptor in the device's first language; characters outside ASCII become "?".
    /// @throws USBException, also for index 0, which is no string
    QString getStringDescriptor(quint8 index);

    /// Adds an asynchronous transfer to the event loop. Before start() only; not owned.
    void addTransfer(I_USBTransfer* transfer) { m_transfers.append(transfer); }

    /// Cancels the pending control transfer within 100 ms and refuses later ones with
    /// LIBUSB_ERROR_INTERRUPTED. Any thread.
    void abortTransfers() { m_transfersAborted = true; }

signals:
    void initialized();
    void error(QString message);
    void opened();
    void closed();
    void disconnected();

protected:
    /// The event loop of "usbThread".
    void run() override;

private:
    void checkError(int result, const QString& format);
    void requireOpened() const;
    void handleEventsOnce();
    bool transfersPending() const;

    int m_configurationNumber;
    int m_interfaceNumber;
    int m_alternateSetting = 0;
    libusb_device_descriptor m_descriptor = {};
    QList<I_USBTransfer*> m_transfers;
    P_LibUsbDevice m_device;
    std::shared_ptr<libusb_device_handle> m_handle;
    USBConfigDescriptor m_configDescriptor;
    std::atomic<bool> m_stopRequested{false};
    std::atomic<bool> m_transfersAborted{false};
    bool m_interfaceClaimed = false;
};

} // namespace USB
