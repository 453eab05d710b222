#pragma once

#include "unit/Overrides.h"

namespace VirtualUnit {

/// The application firmware of a unit: answers the units' own requests. It reports the version that
/// the image in its flash carries.
class Application
{
public:
    explicit Application(const Flash& flash)
        : m_flash(flash)
    {
    }

    Answer handle(const SetupPacket& setup, const Overrides& overrides) const;

private:
    Answer read(std::uint8_t request, const Overrides& overrides) const;
    std::string imageVersion() const;

    const Flash& m_flash;
};

} // namespace VirtualUnit
