#include "virtualbus/Script.h"

#include "unit/FirmwareImage.h"
#include "unit/RequestName.h"
#include "virtualbus/ScriptText.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <stdexcept>

namespace VirtualUnit {

namespace {

using ScriptText::number;

milliseconds inMilliseconds(double seconds)
{
    return milliseconds(std::lround(seconds * 1000));
}

unsigned countOrForever(const std::string& text)
{
    return text == "forever" || text == "always" ? Fault::Forever : number(text);
}

std::uint16_t word(const std::string& text)
{
    const std::uint32_t value = number(text);
    if (value > 0xFFFF)
        throw std::invalid_argument("more than 65535: " + text);
    return static_cast<std::uint16_t>(value);
}

/// What stands behind the first @p count words of @p line.
std::string behind(const std::string& line, std::size_t count)
{
    std::size_t at = 0;
    for (std::size_t i = 0; i < count; ++i) {
        at = line.find_first_not_of(" \t", at);
        at = at == std::string::npos ? at : line.find_first_of(" \t", at);
    }
    at = at == std::string::npos ? at : line.find_first_not_of(" \t", at);
    return at == std::string::npos ? std::string() : line.substr(at);
}

void expect(bool holds, const char* what)
{
    if (!holds)
        throw std::invalid_argument(what);
}

} // namespace

const char* Script::help()
{
    return "Script and control lines: [SECONDS] VERB UNIT ARGUMENTS, # begins a comment line\n"
           "  plug UNIT | unplug UNIT | replug UNIT [SECONDS]\n"
           "  fault UNIT ACTION [on=REQUEST] [first=N] [times=N|always] [value=N|forever]\n"
           "    ACTION: stall, silence, short (value: bytes), fail (value: bStatus), leave,\n"
           "    never-return, busy (value: polls), delay (value: ms). Counting begins when the "
           "line\n"
           "    runs; REQUEST is any, schema, config, version, revision, drop, dnload, "
           "set-address,\n"
           "    erase, write, finish, upload, getstatus, clrstatus, getstate, abort, detach, "
           "string,\n"
           "    descriptor, standard, other.\n"
           "  clear-faults UNIT | restart-counting UNIT\n"
           "  set UNIT KNOB VALUE\n"
           "    in ms: answer-delay command-time erase-time program-time leave-delay return-delay\n"
           "    returns yes|no, schema N, serial TEXT, transfer-size N, page-size N,\n"
           "    and with - to take it back: layout TEXT, poll-timeout MS, and in hexadecimal\n"
           "    status-answer schema-answer config-page version-answer revision-answer\n"
           "    config-descriptor config-answer\n"
           "  load UNIT FILE | image UNIT SIZE VERSION | fill UNIT BYTE   (its application flash)\n"
           "SECONDS count from the start of the command, or from the moment the control line "
           "came.\n";
}

Script::Script(Bus& bus, const std::vector<LabelledUnit>& units)
    : m_bus(bus)
    , m_units(units)
{
}

ScriptAction Script::parse(const std::string& line) const
{
    Words words = ScriptText::words(line);
    if (words.empty() || words[0][0] == '#')
        return {};
    ScriptAction action;
    std::string rest = line;
    if (ScriptText::isSeconds(words[0])) {
        action.after = inMilliseconds(ScriptText::seconds(words[0]));
        words.erase(words.begin());
        rest = behind(line, 1);
    }
    expect(words.size() >= 2, "a verb and a unit are needed");
    action.run = command(words, rest);
    return action;
}

const P_Unit& Script::unitOf(const std::string& label) const
{
    const auto found = std::find_if(m_units.begin(), m_units.end(),
                                    [&label](const auto& unit) { return unit.label == label; });
    if (found == m_units.end())
        throw std::invalid_argument("no unit is called " + label);
    return found->unit;
}

std::function<void()> Script::command(const Words& words, const std::string& rest) const
{
    const std::string& verb = words[0];
    const P_Unit unit = unitOf(words[1]);
    Bus* bus = &m_bus;
    if (verb == "fault") {
        const Fault planned = fault(words);
        return [unit, planned] {
            unit->addFault(planned);
        };
    }
    if (verb == "set") {
        expect(words.size() >= 4, "a override and a value are needed");
        const auto change = override(words[2], behind(rest, 3));
        Unit(UnitSetup()).adjust(change); // refuses a value that no unit takes
        return [unit, change] {
            unit->adjust(change);
        };
    }
    if (verb == "load" || verb == "image" || verb == "fill")
        return contentCommand(unit, words);
    expect(words.size() == 2 || (verb == "replug" && words.size() == 3), "too many words");
    if (verb == "plug")
        return [bus, unit] {
            bus->plug(unit);
        };
    if (verb == "unplug")
        return [bus, unit] {
            bus->unplug(unit);
        };
    if (verb == "replug") {
        const milliseconds away =
            inMilliseconds(words.size() == 3 ? ScriptText::seconds(words[2]) : 0.3);
        return [bus, unit, away] {
            bus->replug(unit, away);
        };
    }
    if (verb == "clear-faults")
        return [unit] {
            unit->clearFaults();
        };
    if (verb == "restart-counting")
        return [unit] {
            unit->restartCounting();
        };
    throw std::invalid_argument("unknown verb: " + verb);
}

std::function<void()> Script::contentCommand(const P_Unit& unit, const Words& words)
{
    const bool isImage = words[0] == "image";
    expect(words.size() == (isImage ? 4U : 3U), "wrong number of words");
    if (words[0] == "fill") {
        const std::uint32_t value = number(words[2]);
        expect(value <= 0xFF, "a byte is at most 255");
        return [unit, value] {
            unit->fillApplication(static_cast<std::uint8_t>(value));
        };
    }
    const Bytes content =
        isImage ? makeImage(number(words[2]), words[3]) : ScriptText::fileContent(words[2]);
    Unit(UnitSetup()).loadImage(content); // refuses what does not fit
    return [unit, content] {
        unit->loadImage(content);
    };
}

Fault Script::fault(const Words& words)
{
    using Action = Fault::Action;
    static const std::map<std::string, Action> actions = {
        {"stall", Action::Stall},       {"silence", Action::Silence},
        {"short", Action::ShortAnswer}, {"fail", Action::FailStatus},
        {"leave", Action::LeaveBus},    {"never-return", Action::NeverReturn},
        {"busy", Action::StayBusy},     {"delay", Action::Delay}};
    expect(words.size() >= 3, "an action is needed");
    const auto action = actions.find(words[2]);
    if (action == actions.end())
        throw std::invalid_argument("unknown action: " + words[2]);
    std::map<std::string, std::string> options = {
        {"on", "any"}, {"first", "1"}, {"times", "1"}, {"value", "0"}};
    for (std::size_t i = 3; i < words.size(); ++i) {
        const std::size_t equals = words[i].find('=');
        const auto option = options.find(words[i].substr(0, equals));
        if (equals == std::string::npos || option == options.end())
            throw std::invalid_argument("unknown option of a fault: " + words[i]);
        option->second = words[i].substr(equals + 1);
    }
    const auto& names = requestNames();
    if (std::find(names.begin(), names.end(), options["on"]) == names.end())
        throw std::invalid_argument("unknown request: " + options["on"]);
    Fault result = Fault::on(options["on"], action->second, countOrForever(options["value"]),
                             number(options["first"]));
    result.times = countOrForever(options["times"]);
    return result;
}

std::function<void(Overrides&)> Script::override(const std::string& name, const std::string& value)
{
    static const std::map<std::string, milliseconds Overrides::*> times = {
        {"answer-delay", &Overrides::answerDelay}, {"command-time", &Overrides::commandTime},
        {"erase-time", &Overrides::eraseTime},     {"program-time", &Overrides::programTime},
        {"leave-delay", &Overrides::leaveDelay},   {"return-delay", &Overrides::returnDelay}};
    static const std::map<std::string, std::optional<Bytes> Overrides::*> answers = {
        {"status-answer", &Overrides::statusAnswer},
        {"schema-answer", &Overrides::schemaAnswer},
        {"config-page", &Overrides::configurationPage},
        {"version-answer", &Overrides::versionAnswer},
        {"revision-answer", &Overrides::revisionAnswer},
        {"config-descriptor", &Overrides::configurationDescriptor},
        {"config-answer", &Overrides::configurationAnswer}};
    const bool takeBack = value == "-";
    if (const auto time = times.find(name); time != times.end())
        return [member = time->second, ms = milliseconds(number(value))](Overrides& overrides) {
            overrides.*member = ms;
        };
    if (const auto answer = answers.find(name); answer != answers.end()) {
        std::optional<Bytes> bytes;
        if (!takeBack)
            bytes = ScriptText::hexadecimal(value);
        return [member = answer->second, bytes](Overrides& overrides) {
            overrides.*member = bytes;
        };
    }
    if (name == "returns")
        return [yes = ScriptText::yesOrNo(value)](Overrides& overrides) {
            overrides.returns = yes;
        };
    if (name == "schema")
        return [schema = number(value)](Overrides& overrides) {
            overrides.schemaVersion = schema;
        };
    if (name == "serial")
        return [value](Overrides& overrides) {
            overrides.serialName = value;
        };
    if (name == "transfer-size")
        return [size = word(value)](Overrides& overrides) {
            overrides.transferSize = size;
        };
    if (name == "page-size")
        return [size = number(value)](Overrides& overrides) {
            overrides.pageSize = size;
        };
    if (name == "layout") {
        const auto layout = takeBack ? std::nullopt : std::optional<std::string>(value);
        return [layout](Overrides& overrides) {
            overrides.layout = layout;
        };
    }
    if (name == "poll-timeout") {
        std::optional<std::uint32_t> timeout;
        if (!takeBack)
            timeout = number(value);
        return [timeout](Overrides& overrides) {
            overrides.pollTimeout = timeout;
        };
    }
    throw std::invalid_argument("unknown override: " + name);
}

} // namespace VirtualUnit
