#pragma once

#include "bus/Bus.h"
#include "virtualbus/UnitOption.h"

namespace VirtualUnit {

/// One line of a script: what to do, and when.
struct ScriptAction
{
    milliseconds after{0};
    std::function<void()> run;
};

/// Understands the lines of scripts and of the control pipe, see help(). The bus and the units must
/// outlive the actions. An action may run on any thread.
class Script
{
public:
    Script(Bus& bus, const std::vector<LabelledUnit>& units);

    /// Checks a line completely. A blank line or a comment gives an action without `run`. Throws
    /// std::invalid_argument with a text for the user.
    ScriptAction parse(const std::string& line) const;

    static const char* help();

private:
    using Words = std::vector<std::string>;

    const P_Unit& unitOf(const std::string& label) const;
    std::function<void()> command(const Words& words, const std::string& rest) const;
    static std::function<void()> contentCommand(const P_Unit& unit, const Words& words);
    static std::function<void(Overrides&)> override(const std::string& name,
                                                    const std::string& value);
    static Fault fault(const Words& words);

    Bus& m_bus;
    const std::vector<LabelledUnit>& m_units;
};

} // namespace VirtualUnit
