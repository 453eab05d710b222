#pragma once

#include <QByteArray>

#include <cstddef>
#include <cstdint>

/// What libFuzzer calls, once per input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace Fuzz {

/// Ends the process as a crash, which libFuzzer records with its input, unless the statement holds.
void require(bool holds, const char* statement);

/// The input as the product takes bytes. A copy of exactly that size, so that AddressSanitizer sees
/// each byte read past its end.
QByteArray bytesOf(const std::uint8_t* data, std::size_t size);

} // namespace Fuzz
