#include "unit/Flash.h"

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <stdexcept>

namespace VirtualUnit {

namespace {

constexpr std::uint32_t protectedSize = Flash::ApplicationStart - Flash::Start;
constexpr std::uint32_t applicationSize = Flash::Size - protectedSize;
constexpr std::uint8_t erased = 0xFF;

std::string sectors(std::uint32_t count, std::uint32_t size, char type)
{
    const bool kibibytes = size % 1024 == 0;
    char text[40];
    std::snprintf(text, sizeof text, "%02" PRIu32 "*%03" PRIu32 "%c%c", count,
                  kibibytes ? size / 1024 : size, kibibytes ? 'K' : 'B', type);
    return text;
}

} // namespace

Flash::Flash()
    : m_memory(Size, erased)
{
    for (std::uint32_t i = 0; i < protectedSize; ++i)
        m_memory[i] = static_cast<std::uint8_t>(i * 7 + (i >> 8));
}

void Flash::setPageSize(std::uint32_t bytes)
{
    if (bytes == 0 || bytes > applicationSize)
        throw std::invalid_argument("a page has 1 to 247808 bytes");
    m_pageSize = bytes;
}

std::string Flash::layout() const
{
    // Type 'a' is readable only, 'g' readable, erasable and writeable (DfuSe file format, layout
    // descriptor).
    return "@Internal Flash  /0x08000000/" + sectors(protectedSize / 2048, 2048, 'a') + ',' +
           sectors(applicationSize / m_pageSize, m_pageSize, 'g');
}

std::uint32_t Flash::end() const
{
    return ApplicationStart + applicationSize / m_pageSize * m_pageSize;
}

Flash::Result Flash::erasePage(std::uint32_t address)
{
    if (address < Start || address >= end())
        return Result::OutOfRange;
    if (isProtected(address))
        return Result::Protected;
    const std::uint32_t page = address - (address - ApplicationStart) % m_pageSize;
    std::fill_n(m_memory.begin() + offset(page), m_pageSize, erased);
    return Result::Ok;
}

void Flash::eraseApplication()
{
    fillApplication(erased);
}

Flash::Result Flash::program(std::uint32_t address, const Bytes& data)
{
    if (address < Start || address >= end() || data.size() > end() - address)
        return Result::OutOfRange;
    if (isProtected(address))
        return Result::Protected;
    const auto target = m_memory.begin() + offset(address);
    const bool onlyClears =
        std::equal(data.begin(), data.end(), target, [](std::uint8_t wanted, std::uint8_t present) {
            return (wanted & present) == wanted;
        });
    if (!onlyClears)
        return Result::NotErased;
    std::copy(data.begin(), data.end(), target);
    return Result::Ok;
}

Bytes Flash::read(std::uint32_t address, std::size_t length) const
{
    if (address < Start || address >= end())
        return {};
    const std::size_t available = std::min<std::size_t>(length, end() - address);
    const auto source = m_memory.begin() + offset(address);
    return {source, source + static_cast<Bytes::difference_type>(available)};
}

Bytes Flash::application() const
{
    return {m_memory.begin() + offset(ApplicationStart), m_memory.end()};
}

void Flash::loadApplication(const Bytes& image)
{
    if (image.size() > applicationSize)
        throw std::invalid_argument("the image is longer than the application area");
    eraseApplication();
    std::copy(image.begin(), image.end(), m_memory.begin() + offset(ApplicationStart));
}

void Flash::fillApplication(std::uint8_t value)
{
    std::fill(m_memory.begin() + offset(ApplicationStart), m_memory.end(), value);
}

} // namespace VirtualUnit
