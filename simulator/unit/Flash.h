#pragma once

#include "unit/SetupPacket.h"

#include <string>

namespace VirtualUnit {

/// The unit's flash: 7 protected pages of 2 KiB with the bootloader, then the application area in
/// erasable pages. Behaves as flash does: a page is erased to 0xFF as a whole, and programming only
/// clears bits. Not thread-safe; the unit locks.
class Flash
{
public:
    static constexpr std::uint32_t Start = 0x08000000;
    static constexpr std::uint32_t Size = 256 * 1024;
    static constexpr std::uint32_t ApplicationStart = 0x08003800;
    static constexpr std::uint32_t DefaultPageSize = 2048;

    enum class Result
    {
        Ok,
        OutOfRange,
        Protected,
        NotErased,
    };

    Flash();

    /// Bytes of one erasable page of the application area. Throws std::invalid_argument for 0 and
    /// for more than the area. The content stays.
    void setPageSize(std::uint32_t bytes);
    std::uint32_t pageSize() const { return m_pageSize; }

    /// The layout as DfuSe bootloaders publish it: "@Internal Flash  /0x08000000/07*002Ka,...".
    std::string layout() const;

    /// The first address that is no more memory (a rest smaller than a page is left out).
    std::uint32_t end() const;

    /// Erases the page that @p address lies in.
    Result erasePage(std::uint32_t address);
    void eraseApplication();

    /// Writes all of @p data, or nothing of it where a result other than Ok is given.
    Result program(std::uint32_t address, const Bytes& data);

    /// At most @p length bytes from @p address, fewer at the end of memory, none outside.
    Bytes read(std::uint32_t address, std::size_t length) const;

    /// The application area, to the end.
    Bytes application() const;

    /// Erases the application area and puts @p image there, as in the factory. Throws
    /// std::invalid_argument when it is too long.
    void loadApplication(const Bytes& image);
    void fillApplication(std::uint8_t value);

private:
    bool isProtected(std::uint32_t address) const { return address < ApplicationStart; }
    Bytes::difference_type offset(std::uint32_t address) const
    {
        return static_cast<Bytes::difference_type>(address - Start);
    }

    Bytes m_memory;
    std::uint32_t m_pageSize = DefaultPageSize;
};

} // namespace VirtualUnit
