#include "virtualbus/UnitOption.h"

#include "unit/FirmwareImage.h"
#include "virtualbus/ScriptText.h"

#include <algorithm>
#include <stdexcept>

namespace VirtualUnit {

const char* const unitOptionHelp =
    "Units: KIND[:KEY=VALUE]... where KIND is aquen, solvar, aquen-dfu or solvar-dfu, and KEY\n"
    "  serial=NAME     serial name in the configuration page (default \"Virtual KIND N\")\n"
    "  firmware=X.Y.Z  version of the image in its flash (default 1.2.0; a -dfu unit has no image\n"
    "                  unless it is given one)\n"
    "  size=BYTES      size of that image (default 16384)\n"
    "  image=FILE      what its application flash holds instead\n"
    "  schema=4|5      configuration schema version (default 5)\n"
    "  label=NAME      what scripts and the report call it (default KIND, then KIND#2, ...)\n"
    "  plugged=no      not on the bus at first\n";

namespace {

struct Options
{
    UnitSetup setup;
    std::string label;
    std::string image;
    bool plugged = true;
};

void apply(Options& options, const std::string& key, const std::string& value)
{
    if (key == "serial")
        options.setup.serialName = value;
    else if (key == "firmware")
        options.setup.firmware = value;
    else if (key == "size")
        options.setup.imageSize = ScriptText::number(value);
    else if (key == "image")
        options.image = value;
    else if (key == "schema")
        options.setup.schemaVersion = ScriptText::number(value);
    else if (key == "label")
        options.label = value;
    else if (key == "plugged")
        options.plugged = ScriptText::yesOrNo(value);
    else
        throw std::invalid_argument("unknown option of a unit: " + key);
}

void applyKind(Options& options, const std::string& kind)
{
    static const std::vector<std::string> kinds = {"aquen", "solvar", "aquen-dfu", "solvar-dfu"};
    const auto found = std::find(kinds.begin(), kinds.end(), kind);
    if (found == kinds.end())
        throw std::invalid_argument("unknown kind of unit: " + kind);
    const auto index = found - kinds.begin();
    options.setup.kind = index % 2 == 0 ? Kind::Aquen : Kind::Solvar;
    options.setup.mode = index < 2 ? Mode::Application : Mode::Bootloader;
    if (options.setup.mode == Mode::Application)
        options.setup.firmware = "1.2.0";
    options.label = kind;
}

std::string uniqueLabel(const std::string& wanted, const std::vector<LabelledUnit>& before)
{
    const auto taken = [&before](const std::string& label) {
        return std::any_of(before.begin(), before.end(),
                           [&label](const LabelledUnit& unit) { return unit.label == label; });
    };
    std::string label = wanted;
    for (int number = 2; taken(label); ++number)
        label = wanted + '#' + std::to_string(number);
    return label;
}

} // namespace

LabelledUnit makeUnit(const std::string& option, const std::vector<LabelledUnit>& before)
{
    const std::vector<std::string> parts = ScriptText::split(option, ':');
    Options options;
    applyKind(options, parts.front());
    const std::string number = std::to_string(before.size() + 1);
    options.setup.serialName =
        (options.setup.kind == Kind::Aquen ? "Virtual Aquen " : "Virtual Solvar ") + number;
    options.setup.usbSerial = std::string(12 - number.size(), '0') + number;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        const std::size_t equals = parts[i].find('=');
        if (equals == std::string::npos)
            throw std::invalid_argument("expected KEY=VALUE instead of " + parts[i]);
        apply(options, parts[i].substr(0, equals), parts[i].substr(equals + 1));
    }
    const auto unit = std::make_shared<Unit>(options.setup);
    if (!options.image.empty())
        unit->loadImage(ScriptText::fileContent(options.image));
    return {uniqueLabel(options.label, before), options.plugged, unit};
}

} // namespace VirtualUnit
