#pragma once

#include "unit/SetupPacket.h"

#include <string>
#include <vector>

namespace VirtualUnit {

/// Reading of the small texts in options and scripts. All throw std::invalid_argument with a text
/// for the user.
namespace ScriptText {

std::vector<std::string> split(const std::string& text, char separator);

/// The words of a line, separated by blanks.
std::vector<std::string> words(const std::string& line);

/// A whole number, decimal or with 0x, up to 32 bits.
std::uint32_t number(const std::string& text);

/// Seconds, zero or more, fractions allowed.
bool isSeconds(const std::string& text);
double seconds(const std::string& text);

bool yesOrNo(const std::string& text);

/// Bytes from hexadecimal digits, two each.
Bytes hexadecimal(const std::string& text);

Bytes fileContent(const std::string& path);

} // namespace ScriptText
} // namespace VirtualUnit
