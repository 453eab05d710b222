// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/ControlTransfer.h"

#include "qslog/Log.h"

#include <QElapsedTimer>

#include <algorithm>
#include <memory>
#include <vector>

namespace USB {

namespace {

constexpr int abortCheckIntervalUs = 100000;
constexpr int loggedBytes = 64;

struct Completion
{
    // Read by libusb under its own locks, to return early from handling events.
    int forLibusb = 0;
    // The callback may run on any thread that handles events.
    std::atomic<bool> done{false};
};

void LIBUSB_CALL transferDone(libusb_transfer* transfer)
{
    auto* completion = static_cast<Completion*>(transfer->user_data);
    completion->forLibusb = 1;
    completion->done.store(true, std::memory_order_release);
}

int resultOf(const libusb_transfer& transfer)
{
    switch (transfer.status) {
    case LIBUSB_TRANSFER_COMPLETED:
        return transfer.actual_length;
    case LIBUSB_TRANSFER_TIMED_OUT:
        return LIBUSB_ERROR_TIMEOUT;
    case LIBUSB_TRANSFER_STALL:
        return LIBUSB_ERROR_PIPE;
    case LIBUSB_TRANSFER_NO_DEVICE:
        return LIBUSB_ERROR_NO_DEVICE;
    case LIBUSB_TRANSFER_OVERFLOW:
        return LIBUSB_ERROR_OVERFLOW;
    case LIBUSB_TRANSFER_ERROR:
    case LIBUSB_TRANSFER_CANCELLED:
        return LIBUSB_ERROR_IO;
    }
    return LIBUSB_ERROR_OTHER;
}

// Blocks until libusb completes the transfer: libusb owns a submitted transfer until then. True if
// it was cancelled through `aborted`.
bool awaitCompletion(libusb_transfer* transfer, Completion& completion,
                     const std::atomic<bool>& aborted)
{
    bool cancelled = false;
    bool abortedByCaller = false;
    while (!completion.done.load(std::memory_order_acquire)) {
        timeval interval = {0, abortCheckIntervalUs};
        const int result =
            libusb_handle_events_timeout_completed(nullptr, &interval, &completion.forLibusb);
        const bool broken = result < 0 && result != LIBUSB_ERROR_INTERRUPTED;
        if ((broken || aborted) && !cancelled && !completion.done.load(std::memory_order_acquire)) {
            abortedByCaller = aborted;
            cancelled = true;
            libusb_cancel_transfer(transfer);
        }
    }
    return abortedByCaller;
}

int runTransfer(libusb_device_handle* handle, const ControlRequest& request, unsigned char* data,
                quint16 length, const std::atomic<bool>& aborted)
{
    if (aborted)
        return LIBUSB_ERROR_INTERRUPTED;
    const std::unique_ptr<libusb_transfer, decltype(&libusb_free_transfer)> transfer(
        libusb_alloc_transfer(0), &libusb_free_transfer);
    if (!transfer)
        return LIBUSB_ERROR_NO_MEM;

    std::vector<unsigned char> buffer(LIBUSB_CONTROL_SETUP_SIZE + std::size_t(length));
    const auto payload = buffer.begin() + LIBUSB_CONTROL_SETUP_SIZE;
    libusb_fill_control_setup(buffer.data(), request.requestType, request.request, request.value,
                              request.index, length);
    const bool in = (request.requestType & LIBUSB_ENDPOINT_IN) != 0;
    if (!in)
        std::copy(data, data + length, payload);

    Completion completion;
    libusb_fill_control_transfer(transfer.get(), handle, buffer.data(), &transferDone, &completion,
                                 request.timeoutMs);
    const int submitted = libusb_submit_transfer(transfer.get());
    if (submitted < 0)
        return submitted;
    const bool abortedByCaller = awaitCompletion(transfer.get(), completion, aborted);
    if (abortedByCaller && transfer->status == LIBUSB_TRANSFER_CANCELLED)
        return LIBUSB_ERROR_INTERRUPTED;
    const int result = resultOf(*transfer);
    if (in && result > 0)
        std::copy(payload, payload + result, data);
    return result;
}

QString describe(const ControlRequest& request, quint16 length, int result, qint64 elapsedMs)
{
    const QString outcome = result < 0 ? QString::fromLatin1(libusb_error_name(result))
                                       : QStringLiteral("%1 bytes").arg(result);
    return QString::asprintf("Request type %02x, request %02x, value %04x, index %04x, length %u: ",
                             request.requestType, request.request, request.value, request.index,
                             unsigned(length)) +
           QStringLiteral("%1 after %2 ms").arg(outcome).arg(elapsedMs);
}

QByteArray shortened(const unsigned char* data, int size)
{
    const int shown = std::min(size, loggedBytes);
    const QByteArray text = QByteArray(reinterpret_cast<const char*>(data), shown).toHex(' ');
    return shown < size ? text + " and " + QByteArray::number(size - shown) + " more" : text;
}

void logBytes(const char* direction, const unsigned char* data, int size)
{
    if (size > 0)
        QLOG_TRACE() << direction << shortened(data, size).constData();
}

} // namespace

int controlTransfer(libusb_device_handle* handle, const ControlRequest& request,
                    unsigned char* data, quint16 length, const std::atomic<bool>& aborted)
{
    QElapsedTimer time;
    time.start();
    const int result = runTransfer(handle, request, data, length, aborted);
    QLOG_DEBUG() << qUtf8Printable(describe(request, length, result, time.elapsed()));
    if ((request.requestType & LIBUSB_ENDPOINT_IN) != 0)
        logBytes("Received", data, result);
    else
        logBytes("Sent", data, length);
    return result;
}

} // namespace USB
