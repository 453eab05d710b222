#pragma once

#include "unit/Answer.h"
#include "unit/Flash.h"

#include <optional>
#include <string>

namespace VirtualUnit {

/// What tests and demos can change about a unit, before and during a run (Unit::setKnobs,
/// Unit::adjust). A plain value. An override that is set replaces the answer as a whole.
struct Overrides
{
    milliseconds answerDelay{0};   ///< before the answer to every control request
    milliseconds commandTime{0};   ///< work of a DfuSe set-address command
    milliseconds eraseTime{20};    ///< work of erasing one page
    milliseconds programTime{10};  ///< work of programming one block
    milliseconds leaveDelay{20};   ///< from the answer to the disappearance
    milliseconds returnDelay{300}; ///< from there to the return
    bool returns = true;           ///< false: once it has left, the unit stays away

    // Application mode.
    std::uint32_t schemaVersion = 5; ///< 4: configuration page of 64 bytes, 5: of 74 bytes
    std::string serialName;          ///< at most 32 bytes reach the configuration page
    std::optional<Bytes> schemaAnswer;
    std::optional<Bytes> configurationPage;
    std::optional<Bytes> versionAnswer;
    std::optional<Bytes> revisionAnswer;

    // Bootloader mode.
    std::uint16_t transferSize = 2048;
    std::uint32_t pageSize = Flash::DefaultPageSize; ///< real size of an erasable page
    std::optional<std::string> layout;               ///< what the interface string says instead
    std::optional<std::uint32_t>
        pollTimeout;                   ///< bwPollTimeout while busy, instead of the work time
    std::optional<Bytes> statusAnswer; ///< every GETSTATUS is answered with this

    /// The configuration descriptor, both modes, as a request for it is answered and as the host's
    /// system keeps it.
    std::optional<Bytes> configurationDescriptor;
    /// Only as a request for it is answered: lies that a real host system would have refused.
    std::optional<Bytes> configurationAnswer;
};

} // namespace VirtualUnit
