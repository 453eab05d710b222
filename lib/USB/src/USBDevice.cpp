// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/USBDevice.h"

#include "USB/ControlTransfer.h"
#include "USB/USBException.h"
#include "qslog/Log.h"

#include <QCoreApplication>

namespace USB {

namespace {

constexpr unsigned long stopWaitMs = 2000;
constexpr int eventWaitUs = 100000;
constexpr unsigned descriptorTimeoutMs = 1000;
constexpr int stringBufferSize = 1024;

// Closes a handle unless that would abort the program, see setAlternateSetting().
struct HandleCloser
{
    bool canClose = true;
    void operator()(libusb_device_handle* handle) const
    {
        if (canClose)
            libusb_close(handle);
    }
};

} // namespace

USBDevice::USBDevice(P_LibUsbDevice device, int configurationNumber, int interfaceNumber,
                     QObject* parent)
    : QThread(parent)
    , m_configurationNumber(configurationNumber)
    , m_interfaceNumber(interfaceNumber)
    , m_device(std::move(device))
{
    QLOG_INFO() << "configuration number " << configurationNumber;
    setObjectName(QStringLiteral("usbThread"));
    USBDevice::create();
}

USBDevice::~USBDevice()
{
    if (isRunning())
        USBDevice::stop();
}

void USBDevice::create()
{
    if (isOpened())
        throw USBException(tr("device already created"));
    if (!m_device)
        return; // reported by init()
    checkError(libusb_get_device_descriptor(m_device->device, &m_descriptor),
               tr("Could not get the device descriptor of selected usb device") +
                   QStringLiteral(" %1"));
}

void USBDevice::init()
{
    try {
        if (!m_device)
            throw USBException(tr("No usb device given"));
        libusb_device_handle* handle = nullptr;
        checkError(libusb_open(m_device->device, &handle), tr("Could not open the usb device: %1"));
        m_handle.reset(handle, HandleCloser());

        QLOG_INFO() << "config number " << m_configurationNumber;
        setConfiguration(m_configurationNumber);
        setInterface(m_interfaceNumber);
        emit opened();

        libusb_config_descriptor* configuration = nullptr;
        checkError(libusb_get_active_config_descriptor(m_device->device, &configuration),
                   tr("Could not get active config descriptor: %1"));
        m_configDescriptor = USBConfigDescriptor(configuration);
        emit initialized();
    } catch (const USBException&) {
        QLOG_INFO() << "Caught exception, closing USB device";
        close();
        throw;
    }
}

void USBDevice::stop()
{
    m_stopRequested = true;
    if (QThread::currentThread() != this && !wait(stopWaitMs)) {
        QLOG_WARN() << "timed out while closing";
        terminate();
        wait(); // a QThread must not be destroyed while its thread exists
    }
    if (m_handle && m_interfaceClaimed) {
        m_interfaceClaimed = false;
        const int result = libusb_release_interface(m_handle.get(), m_interfaceNumber);
        if (result < 0)
            QLOG_DEBUG() << "Releasing the USB device interface:" << libusb_error_name(result);
    }
    emit closed();
}

void USBDevice::start()
{
    moveToThread(this);
    // Not in run(): that would undo a stop() that comes before the new thread gets there.
    m_stopRequested = false;
    QThread::start(QThread::InheritPriority);
}

void USBDevice::close()
{
    stop();
    m_configDescriptor = USBConfigDescriptor();
    m_handle.reset();
}

QString USBDevice::toString() const
{
    return QString::asprintf("%.4x:%.4x", m_descriptor.idVendor, m_descriptor.idProduct);
}

void USBDevice::setConfiguration(int configuration)
{
    requireOpened();
    int current = 0;
    checkError(libusb_get_configuration(m_handle.get(), &current),
               tr("Could not get the configuration of the usb device: %1"));
    QLOG_INFO() << qPrintable(
        QStringLiteral("Current USB configuration: %1, new: %2").arg(current).arg(configuration));
    if (current == configuration)
        return;
    QLOG_INFO() << "Switching USB device configuration";
    checkError(libusb_set_configuration(m_handle.get(), configuration),
               tr("Could not set the configuration of the usb device: %1"));
    QLOG_INFO() << "Set configuration" << configuration << "as active on usb device";
}

void USBDevice::setInterface(int interface)
{
    requireOpened();
    checkError(libusb_claim_interface(m_handle.get(), interface),
               tr("Could not claim USB device interface: %1"));
    m_interfaceClaimed = true;
    QLOG_INFO() << "Claimed interface of USB device";
    m_interfaceNumber = interface;
}

void USBDevice::setAlternateSetting(int alternate)
{
    requireOpened();
    const int result =
        libusb_set_interface_alt_setting(m_handle.get(), m_interfaceNumber, alternate);
    // When the device has left the bus, libusb 1.0.26 unlocks a lock of the handle that it does not
    // hold, and libusb_close() aborts on the broken lock. The handle stays open instead and leaks
    // one file descriptor.
    if (result == LIBUSB_ERROR_NO_DEVICE)
        std::get_deleter<HandleCloser>(m_handle)->canClose = false;
    QLOG_DEBUG() << "Alternate setting" << alternate << ":" << libusb_error_name(result);
    checkError(result, tr("Could not set alternate setting: %1"));
    m_alternateSetting = alternate;
}

QByteArray USBDevice::controlRead(quint8 requestType, quint8 request, quint16 value, quint16 index,
                                  quint16 length, unsigned timeoutMs)
{
    requireOpened();
    QByteArray buffer(length, '\0');
    const ControlRequest setup{quint8(requestType | LIBUSB_ENDPOINT_IN), request, value, index,
                               timeoutMs};
    checkError(controlTransfer(m_handle.get(), setup,
                               reinterpret_cast<unsigned char*>(buffer.data()), length,
                               m_transfersAborted),
               tr("Control transfer error: %1"));
    return buffer;
}

int USBDevice::controlWrite(quint8 requestType, quint8 request, quint16 value, quint16 index,
                            const QByteArray& data, unsigned timeoutMs)
{
    if (!isOpened())
        QLOG_WARN() << "called controlWrite but could not open USB device";
    requireOpened();
    QByteArray buffer = data;
    const ControlRequest setup{requestType, request, value, index, timeoutMs};
    // wLength has 16 bits (USB 2.0, 9.3): larger data must not be sent truncated.
    const int result = data.size() > 0xFFFF
                           ? int(LIBUSB_ERROR_INVALID_PARAM)
                           : controlTransfer(m_handle.get(), setup,
                                             reinterpret_cast<unsigned char*>(buffer.data()),
                                             quint16(buffer.size()), m_transfersAborted);
    checkError(result, tr("control write error: %1"));
    return result;
}

QByteArray USBDevice::getDescriptor(quint8 type, quint8 index, quint16 length)
{
    requireOpened();
    QByteArray buffer(length, '\0');
    const ControlRequest setup{LIBUSB_ENDPOINT_IN, LIBUSB_REQUEST_GET_DESCRIPTOR,
                               quint16((type << 8) | index), 0, descriptorTimeoutMs};
    checkError(controlTransfer(m_handle.get(), setup,
                               reinterpret_cast<unsigned char*>(buffer.data()), length,
                               m_transfersAborted),
               tr("Could not get descriptor: %1"));
    return buffer;
}

QString USBDevice::getStringDescriptor(quint8 index)
{
    requireOpened();
    QByteArray buffer(stringBufferSize, '\0');
    const int result = libusb_get_string_descriptor_ascii(
        m_handle.get(), index, reinterpret_cast<unsigned char*>(buffer.data()), stringBufferSize);
    const auto length = qstrnlen(buffer.constData(), uint(buffer.size()));
    QString text = QString::fromLatin1(buffer.constData(), int(length));
    // As a text object, whose control characters the log escapes: it comes from the device.
    QLOG_DEBUG() << "String descriptor" << index << ":" << result << text;
    checkError(result, tr("Could not get string descriptor: %1"));
    return text;
}

void USBDevice::run()
{
    try {
        while (!m_stopRequested)
            handleEventsOnce();
        for (I_USBTransfer* transfer : qAsConst(m_transfers))
            transfer->cancel();
        while (transfersPending())
            handleEventsOnce();
    } catch (const USBException& exception) {
        QLOG_INFO() << "Caught usb exception " << exception.message();
        emit error(tr("Caught usb exception: %1").arg(exception.message()));
    }
}

void USBDevice::handleEventsOnce()
{
    QCoreApplication::processEvents();
    timeval timeout = {0, eventWaitUs};
    const int result = libusb_handle_events_timeout(nullptr, &timeout);
    if (result < 0)
        emit error(tr("Could not handle USB events: %1")
                       .arg(QString::fromLatin1(libusb_error_name(result))));
}

bool USBDevice::transfersPending() const
{
    for (const I_USBTransfer* transfer : m_transfers) {
        if (!transfer->isDone())
            return true;
    }
    return false;
}

void USBDevice::requireOpened() const
{
    if (!isOpened())
        throw USBException(tr("USB device not opened"));
}

void USBDevice::checkError(int result, const QString& format)
{
    if (result >= 0)
        return;
    switch (result) {
    case LIBUSB_ERROR_NO_DEVICE:
    case LIBUSB_ERROR_NOT_FOUND:
        stop();
        emit disconnected();
        break;
    case LIBUSB_ERROR_IO:
    case LIBUSB_ERROR_ACCESS:
        stop();
        break;
    default:
        break;
    }
    const QString message = format.arg(QString::fromLatin1(libusb_error_name(result)));
    QLOG_ERROR() << "check libusb retvalue " << message;
    throw USBException(message, result);
}

} // namespace USB
