// SPDX-License-Identifier: LicenseRef-Proprietary
#include "unit/Flash.h"

#include <algorithm>
#include <stdexcept>

namespace VirtualUnit {

using Dfu::Status;

namespace {

constexpr std::uint8_t erased = 0xFF;
constexpr std::uint32_t applicationOffset = Flash::ApplicationStart - Flash::Start;

} // namespace

Flash::Flash()
    : m_memory(End - Start, erased)
{
    for (std::uint32_t i = 0; i < applicationOffset; ++i)
        m_memory[i] = static_cast<std::uint8_t>(i * 7 + (i >> 8));
}

Status Flash::checkWriteable(std::uint32_t address, std::size_t size)
{
    if (address < Start || address >= End || size > End - address)
        return Status::ErrTarget;
    return address < ApplicationStart ? Status::ErrWrite : Status::Ok;
}

Status Flash::erasePage(std::uint32_t address, std::uint32_t pageSize)
{
    const Status status = checkWriteable(address, 1);
    if (status == Status::Ok) {
        const std::uint32_t behindStart = (address - ApplicationStart) % pageSize;
        std::fill_n(&m_memory[address - Start - behindStart], pageSize, erased);
    }
    return status;
}

void Flash::eraseApplication()
{
    std::fill(m_memory.begin() + applicationOffset, m_memory.end(), erased);
}

Status Flash::program(std::uint32_t address, const Bytes& data)
{
    const Status status = checkWriteable(address, data.size());
    if (status != Status::Ok)
        return status;
    const auto target = m_memory.begin() + (address - Start);
    const auto onlyClears = [](std::uint8_t wanted, std::uint8_t present) {
        return (wanted & present) == wanted;
    };
    if (!std::equal(data.begin(), data.end(), target, onlyClears))
        return Status::ErrProg;
    std::copy(data.begin(), data.end(), target);
    return Status::Ok;
}

Bytes Flash::read(std::uint32_t address, std::size_t length) const
{
    if (address < Start || address >= End)
        return {};
    const auto first = m_memory.begin() + (address - Start);
    return {first, first + std::min<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(length),
                                                    m_memory.end() - first)};
}

void Flash::loadApplication(const Bytes& image)
{
    if (image.size() > End - ApplicationStart)
        throw std::invalid_argument("the image is longer than the application area");
    eraseApplication();
    std::copy(image.begin(), image.end(), m_memory.begin() + applicationOffset);
}

} // namespace VirtualUnit
