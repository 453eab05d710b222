// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Bytes.h"
#include "unit/Protocol.h"

namespace VirtualUnit {

/// The unit's flash: 7 protected pages of 2 KiB with the bootloader, then 121 pages of application.
/// A page is erased to 0xFF as a whole, and programming only clears bits. Not thread-safe; the unit
/// locks.
class Flash
{
public:
    static constexpr std::uint32_t Start = 0x08000000;
    static constexpr std::uint32_t ApplicationStart = 0x08003800;
    static constexpr std::uint32_t End = 0x08040000; ///< the first address behind the memory

    /// This memory as a DfuSe bootloader publishes it (DfuSe file format, layout string): 'a' is
    /// only readable, 'g' is readable, erasable and writeable.
    static constexpr const char* Layout = "@Internal Flash  /0x08000000/07*002Ka,121*002Kg";

    Flash();

    /// Erases the page of @p pageSize bytes that holds @p address. ErrTarget outside of the memory,
    /// ErrWrite for a protected page.
    Dfu::Status erasePage(std::uint32_t address, std::uint32_t pageSize);
    void eraseApplication();

    /// Writes all of @p data, or nothing of it: errors as above, and ErrProg where a bit that is
    /// cleared would have to be set.
    Dfu::Status program(std::uint32_t address, const Bytes& data);

    /// At most @p length bytes from @p address, fewer at the end of the memory, none outside.
    Bytes read(std::uint32_t address, std::size_t length) const;

    /// The whole application area.
    Bytes application() const { return read(ApplicationStart, End - ApplicationStart); }

    /// Erases the application area and puts @p image there, as in the factory. Throws
    /// std::invalid_argument when it is too long.
    void loadApplication(const Bytes& image);

private:
    /// Ok where @p size bytes from @p address can be changed.
    static Dfu::Status checkWriteable(std::uint32_t address, std::size_t size);

    Bytes m_memory;
};

} // namespace VirtualUnit
