// SPDX-License-Identifier: LicenseRef-Proprietary
#include "control/UnitOption.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>
#include <stdexcept>

namespace VirtualUnit {

namespace {

std::string serialName(const QString& text)
{
    std::string name = text.toLatin1().toStdString();
    if (name.size() > MaximumSerialNameLength)
        throw std::invalid_argument("a serial name has at most 32 bytes: " + name);
    return name;
}

} // namespace

QString unitOptionHelp()
{
    return QStringLiteral(
        "UNIT is KIND[:KEY=VALUE]... where KIND is aquen, solvar, aquen-dfu or solvar-dfu.\n"
        "  serial=NAME     serial name in the configuration page, up to 32 bytes (default\n"
        "                  \"Virtual KIND N\")\n"
        "  firmware=X.Y.Z  version of the image in its flash (default 1.2.0; a -dfu unit has no\n"
        "                  image unless it is given one)\n"
        "  plugged=no      not on the bus at first\n"
        "  open=ERROR      cannot be opened; a number of libusb_error, in simulator/libusb only\n"
        "Control lines and the report call it KIND, the second one KIND#2, and so on.\n");
}

std::string firmwareVersion(const QString& text)
{
    constexpr int longest = 8; // the response's size
    static const QRegularExpression pattern(QStringLiteral("\\A[0-9]+\\.[0-9]+\\.[0-9]+\\z"));
    if (!pattern.match(text).hasMatch() || text.size() > longest)
        throw std::invalid_argument("not a version X.Y.Z of at most 8 characters: " +
                                    text.toStdString());
    return text.toStdString();
}

LabelledUnit makeUnit(const QString& option, const std::vector<LabelledUnit>& before)
{
    const QStringList parts = option.split(':');
    const QString& kind = parts.first();
    const bool isAquen = kind.startsWith(QLatin1String("aquen"));
    const QString name = isAquen ? "aquen" : "solvar";
    if (kind != name && kind != name + "-dfu")
        throw std::invalid_argument("unknown kind of unit: " + kind.toStdString());
    const std::string number = std::to_string(before.size() + 1);
    UnitSetup setup;
    setup.kind = isAquen ? Kind::Aquen : Kind::Solvar;
    setup.mode = kind == name ? Mode::Application : Mode::Bootloader;
    if (setup.mode == Mode::Application)
        setup.firmware = "1.2.0";
    setup.serialName = (isAquen ? "Virtual Aquen " : "Virtual Solvar ") + number;
    setup.usbSerial = std::string(12 - number.size(), '0') + number;

    LabelledUnit unit;
    const QStringList settings = parts.mid(1);
    for (const QString& part : settings) {
        const QString key = part.section('=', 0, 0);
        const QString value = part.section('=', 1);
        if (key == QLatin1String("serial") && part != key)
            setup.serialName = serialName(value);
        else if (key == QLatin1String("firmware") && part != key)
            setup.firmware = firmwareVersion(value);
        else if (part == QLatin1String("plugged=no"))
            unit.plugged = false;
        else if (key == QLatin1String("open"))
            setup.openError = value.toInt();
        else if (part != QLatin1String("plugged=yes"))
            throw std::invalid_argument("unknown option of a unit: " + part.toStdString());
    }
    unit.unit = std::make_shared<Unit>(setup);
    unit.label = kind;
    const auto isTaken = [&unit](const LabelledUnit& other) {
        return other.label == unit.label;
    };
    for (int count = 2; std::any_of(before.begin(), before.end(), isTaken); ++count)
        unit.label = kind + '#' + QString::number(count);
    return unit;
}

} // namespace VirtualUnit
