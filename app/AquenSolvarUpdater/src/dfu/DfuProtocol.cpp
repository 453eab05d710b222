// SPDX-License-Identifier: LicenseRef-Proprietary
#include "dfu/DfuProtocol.h"

#include <iterator>

namespace AquenSolvar::Device {

namespace {

constexpr int statusReplyLength = 6;
constexpr int functionalDescriptorLength = 9;
constexpr int configurationHeaderLength = 4; // up to wTotalLength

constexpr const char* statusNames[] = {
    "OK",
    "Target error",
    "File error",
    "Write error",
    "Erase error",
    "Check erased error",
    "Prog error",
    "Verify error",
    "Address error",
    "Not done error",
    "Firmware error",
    "Vendor error",
    "USBR error",
    "POR error",
    "Unknown error",
    "Stalled packet",
};

constexpr const char* stateNames[] = {
    "App idle",      "App detached",   "Idle",     "Download sync",       "Download busy",
    "Download idle", "Manifest sync:", "Manifest", "Manifest wait reset", "Upload idle",
    "Error",
};

template <std::size_t Size>
QString nameIn(const char* const (&names)[Size], int code, const char* illegal)
{
    const bool known = code >= 0 && std::size_t(code) < Size;
    return QString::fromLatin1(known ? names[code] : illegal);
}

quint32 signExtended(char byte)
{
    return quint32(qint32(static_cast<signed char>(byte)));
}

quint32 signExtendedWord(const QByteArray& bytes, int offset)
{
    return (signExtended(bytes[offset + 1]) << 8) | signExtended(bytes[offset]);
}

} // namespace

QString statusName(int status)
{
    return nameIn(statusNames, status, "Illegal status");
}

QString stateName(int state)
{
    return nameIn(stateNames, state, "Illegal state");
}

DfuStatusReply decodeStatusReply(const QByteArray& response)
{
    const QByteArray bytes = response.leftJustified(statusReplyLength, '\0', true);
    DfuStatusReply reply;
    reply.status = qint32(signExtended(bytes[0]));
    reply.pollTimeout =
        (((signExtended(bytes[3]) << 8) | signExtended(bytes[2])) << 8) | signExtended(bytes[1]);
    reply.state = qint32(signExtended(bytes[4]));
    return reply;
}

bool decodeFunctionalDescriptor(const QByteArray& configuration, DfuFunctionalDescriptor& out)
{
    if (configuration.size() < configurationHeaderLength)
        return false;
    const qint32 totalLength = qint32(signExtendedWord(configuration, 2));
    if (totalLength < functionalDescriptorLength ||
        configuration.size() < functionalDescriptorLength)
        return false;
    const QByteArray last = configuration.left(totalLength).right(functionalDescriptorLength);
    out.attributes = quint8(last[2]);
    out.detachTimeout = quint16(signExtendedWord(last, 3));
    out.transferSize = quint16(signExtendedWord(last, 5));
    return true;
}

QByteArray specialCommandPayload(quint32 address, SpecialCommand command)
{
    QByteArray payload(5, '\0');
    if (command == SET_ADDRESS)
        payload[0] = 0x21;
    else if (command == ERASE_PAGE)
        payload[0] = 0x41;
    for (int i = 0; i < 4; ++i)
        payload[1 + i] = char((address >> (8 * i)) & 0xFF);
    return payload;
}

} // namespace AquenSolvar::Device
