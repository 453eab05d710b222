#include "virtualbus/ScriptText.h"

#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <sstream>
#include <stdexcept>

namespace VirtualUnit::ScriptText {

std::vector<std::string> split(const std::string& text, char separator)
{
    std::vector<std::string> parts;
    std::istringstream stream(text);
    std::string part;
    while (std::getline(stream, part, separator))
        parts.push_back(part);
    if (parts.empty())
        parts.emplace_back();
    return parts;
}

std::vector<std::string> words(const std::string& line)
{
    std::istringstream stream(line);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::uint32_t number(const std::string& text)
{
    std::size_t used = 0;
    unsigned long value = 0;
    try {
        if (!text.empty() && text[0] >= '0' && text[0] <= '9')
            value = std::stoul(text, &used, 0);
    } catch (const std::out_of_range&) {
        used = 0;
    }
    if (used == 0 || used != text.size() || value > std::numeric_limits<std::uint32_t>::max())
        throw std::invalid_argument("not a number: " + text);
    return static_cast<std::uint32_t>(value);
}

bool isSeconds(const std::string& text)
{
    return !text.empty() && text.find_first_not_of("0123456789.") == std::string::npos &&
           text != "." && text.find('.') == text.rfind('.');
}

double seconds(const std::string& text)
{
    constexpr double aDay = 86400;
    const double value = isSeconds(text) && text.size() < 20 ? std::stod(text) : -1;
    if (value < 0 || value > aDay)
        throw std::invalid_argument("not a time in seconds: " + text);
    return value;
}

bool yesOrNo(const std::string& text)
{
    if (text != "yes" && text != "no")
        throw std::invalid_argument("expected yes or no instead of " + text);
    return text == "yes";
}

Bytes hexadecimal(const std::string& text)
{
    if (text.size() % 2 != 0 ||
        text.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
        throw std::invalid_argument("expected pairs of hexadecimal digits instead of " + text);
    Bytes bytes;
    for (std::size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<std::uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

Bytes fileContent(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    if (!file.is_open() || file.bad())
        throw std::invalid_argument("cannot read " + path);
    return bytes;
}

} // namespace VirtualUnit::ScriptText
