#include "UnitDriver.h"

#include <QStringList>

#include <algorithm>

using namespace VirtualUnit;

UnitDriver::UnitDriver(const UnitSetup& setup)
    : m_unit(setup, [this] { return m_now; })
{
    m_unit.arrive();
}

Answer UnitDriver::download(std::uint16_t block, const Bytes& data)
{
    return m_unit.control({0x21, 1, block, 0, static_cast<std::uint16_t>(data.size())}, data);
}

Answer UnitDriver::read(std::uint8_t request, std::uint16_t value, std::uint16_t length)
{
    return m_unit.control({0xA1, request, value, 0, length}, {});
}

Answer UnitDriver::write(std::uint8_t request)
{
    return m_unit.control({0x21, request, 0, 0, 0}, {});
}

Answer UnitDriver::command(std::uint8_t code, std::uint32_t address)
{
    Bytes bytes = {code};
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(address >> shift));
    return download(0, bytes);
}

std::pair<int, int> UnitDriver::poll()
{
    Bytes status = read(3, 0, 6).data;
    for (int i = 0; i < 100 && status.at(4) == 4; ++i) {
        pass(milliseconds(50));
        status = read(3, 0, 6).data;
    }
    return {status.at(0), status.at(4)};
}

Answer UnitDriver::step(const QString& text)
{
    const QStringList parts = text.split(QLatin1Char(':'));
    const auto word = [&parts](int index) {
        return static_cast<std::uint16_t>(parts.value(index).toUInt(nullptr, 16));
    };
    const QString& verb = parts[0];
    if (verb == QLatin1String("set"))
        return command(0x21, parts.value(1).toUInt(nullptr, 16));
    if (verb == QLatin1String("erase"))
        return command(0x41, parts.value(1).toUInt(nullptr, 16));
    if (verb == QLatin1String("write"))
        return download(word(1), Bytes(word(2), 0x5A));
    if (verb == QLatin1String("raw"))
        return download(0, {static_cast<std::uint8_t>(word(1))});
    if (verb == QLatin1String("finish"))
        return download(2, {});
    if (verb == QLatin1String("up"))
        return read(2, word(1), word(2));
    if (verb == QLatin1String("st"))
        return read(3, 0, 6);
    if (verb == QLatin1String("clr"))
        return write(4);
    if (verb == QLatin1String("abort"))
        return write(6);
    if (verb == QLatin1String("detach"))
        return write(0);
    if (verb != QLatin1String("wait"))
        qFatal("unknown step %s", qPrintable(verb));
    pass(milliseconds(1000));
    return Answer::acknowledge();
}

bool UnitDriver::flash(const Bytes& image, std::size_t limit)
{
    const std::pair<int, int> done(0, 5);
    bool accepted = true;
    for (std::uint32_t at = 0; at < image.size() && at < limit; at += 2048) {
        command(0x41, ApplicationStart + at);
        accepted = accepted && poll() == done;
        command(0x21, ApplicationStart + at);
        accepted = accepted && poll() == done;
        const auto begin = image.begin() + at;
        const auto length = std::min<std::size_t>(2048, image.size() - at);
        download(2, {begin, begin + static_cast<std::ptrdiff_t>(length)});
        accepted = accepted && poll() == done;
    }
    return accepted;
}
