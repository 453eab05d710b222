// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "unit/Overrides.h"

namespace VirtualUnit {

/// The application firmware of a unit: handles the units' own requests. It reports the version of
/// the image in its flash. Not thread-safe; the unit locks.
class Application
{
public:
    /// Both must outlive this object.
    Application(const Flash& flash, const Overrides& overrides)
        : m_flash(flash)
        , m_overrides(overrides)
    {
    }

    Response handle(const SetupPacket& setup) const;

private:
    Response read(std::uint8_t request) const;

    const Flash& m_flash;
    const Overrides& m_overrides;
};

} // namespace VirtualUnit
