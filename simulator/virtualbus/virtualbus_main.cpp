#include "bus/Scheduler.h"
#include "umockdev/VirtualBus.h"
#include "unit/FirmwareImage.h"
#include "usbip/KernelHost.h"
#include "virtualbus/ChildProcess.h"
#include "virtualbus/ControlPipe.h"
#include "virtualbus/Preload.h"
#include "virtualbus/Report.h"
#include "virtualbus/Script.h"
#include "virtualbus/ScriptText.h"
#include "virtualbus/UnitOption.h"

#include <fstream>
#include <getopt.h>
#include <iostream>
#include <sstream>
#include <stdexcept>

using namespace VirtualUnit;

namespace {

constexpr int exitUsage = 2;
constexpr int exitCannotRun = 127;
constexpr milliseconds settleTime(5000);

const char* const usage =
    "Usage: virtualbus [--unit UNIT]... [OPTION]... -- COMMAND [ARGUMENT]...\n"
    "Runs a command with virtual units, and nothing else, on its USB bus.\n\n"
    "  -u, --unit UNIT     put a unit on the bus\n"
    "  -k, --kernel        put the units on this machine's own bus, for all its programs to see;\n"
    "                      needs root and the kernel's module vhci-hcd\n"
    "  -s, --script FILE   do what the file's lines say while the command runs\n"
    "  -c, --control PATH  take such lines from a FIFO; it is made if it is not there\n"
    "  -r, --report FILE   write the report on the units there instead of to standard error\n"
    "  -t, --trace FILE    write down every control request the units got\n"
    "  -v, --verbose       say on standard error when a unit comes and goes\n"
    "  -h, --help          show this text\n\n"
    "virtualbus --make-image VERSION:SIZE:FILE\n"
    "Writes a firmware image that the virtual units take for valid, of that version and size.\n\n"
    "The exit status is the command's; 2 for wrong arguments, 127 when it cannot be run.\n"
    "At the end there is one line per unit: its mode, firmware version, whether it is on the bus,\n"
    "and length and SHA-256 of what its application flash holds.\n\n";

struct Options
{
    std::vector<LabelledUnit> units;
    bool kernel = false;
    std::string script;
    std::string control;
    std::string report;
    std::string trace;
    std::vector<std::string> command;
    bool verbose = false;
    std::string image; ///< what to make instead of running a command
    bool help = false;
};

/// Throws std::invalid_argument with a text for the user.
Options parseArguments(int count, char** arguments)
{
    static const option known[] = {{"unit", required_argument, nullptr, 'u'},
                                   {"kernel", no_argument, nullptr, 'k'},
                                   {"script", required_argument, nullptr, 's'},
                                   {"control", required_argument, nullptr, 'c'},
                                   {"report", required_argument, nullptr, 'r'},
                                   {"trace", required_argument, nullptr, 't'},
                                   {"verbose", no_argument, nullptr, 'v'},
                                   {"help", no_argument, nullptr, 'h'},
                                   {"make-image", required_argument, nullptr, 'm'},
                                   {nullptr, 0, nullptr, 0}};
    Options options;
    int found = 0;
    // "+": the first word that is no option begins the command.
    while ((found = getopt_long(count, arguments, "+u:s:c:r:t:m:kvh", known, nullptr)) != -1) {
        switch (found) {
        case 'u':
            options.units.push_back(makeUnit(optarg, options.units));
            break;
        case 'k':
            options.kernel = true;
            break;
        case 's':
            options.script = optarg;
            break;
        case 'c':
            options.control = optarg;
            break;
        case 'r':
            options.report = optarg;
            break;
        case 't':
            options.trace = optarg;
            break;
        case 'v':
            options.verbose = true;
            break;
        case 'm':
            options.image = optarg;
            return options;
        case 'h':
            options.help = true;
            return options;
        default:
            throw std::invalid_argument("see virtualbus --help");
        }
    }
    options.command.assign(arguments + optind, arguments + count);
    if (options.command.empty())
        throw std::invalid_argument("no command to run");
    return options;
}

std::vector<ScriptAction> readScript(const std::string& path, const Script& script)
{
    std::vector<ScriptAction> actions;
    if (path.empty())
        return actions;
    const Bytes content = ScriptText::fileContent(path);
    std::istringstream lines(std::string(content.begin(), content.end()));
    std::string line;
    for (int number = 1; std::getline(lines, line); ++number) {
        try {
            actions.push_back(script.parse(line));
        } catch (const std::invalid_argument& error) {
            throw std::invalid_argument(path + ':' + std::to_string(number) + ": " + error.what());
        }
    }
    return actions;
}

void perform(const ScriptAction& action)
{
    try {
        action.run();
    } catch (const std::exception& error) {
        std::cerr << "virtualbus: " << error.what() << '\n';
    }
}

void schedule(Scheduler& scheduler, const ScriptAction& action)
{
    if (action.run)
        scheduler.after(action.after, [action] { perform(action); });
}

void takeControlLines(ControlPipe& pipe, const Script& script, Scheduler& scheduler)
{
    for (const std::string& line : pipe.takeLines()) {
        try {
            schedule(scheduler, script.parse(line));
        } catch (const std::invalid_argument& error) {
            std::cerr << "virtualbus: control: " << error.what() << '\n';
        }
    }
}

void announce(const Options& options, Bus& bus)
{
    if (!options.verbose)
        return;
    bus.setObserver([&options](const P_Unit& unit, Bus::Event event) {
        for (const LabelledUnit& labelled : options.units) {
            if (labelled.unit == unit)
                std::cerr << "virtualbus: " + labelled.label +
                                 (event == Bus::Event::Arrived ? " arrived\n" : " left\n");
        }
    });
}

std::unique_ptr<std::ofstream> openOutput(const std::string& path)
{
    if (path.empty())
        return nullptr;
    auto file = std::make_unique<std::ofstream>(path, std::ios::binary);
    if (!*file)
        throw std::invalid_argument("cannot write " + path);
    return file;
}

void writeImage(const std::string& order)
{
    const std::vector<std::string> parts = ScriptText::split(order, ':');
    if (parts.size() != 3)
        throw std::invalid_argument("expected VERSION:SIZE:FILE instead of " + order);
    const Bytes image = makeImage(ScriptText::number(parts[1]), parts[0]);
    const auto file = openOutput(parts[2]);
    file->write(reinterpret_cast<const char*>(image.data()),
                static_cast<std::streamsize>(image.size()));
    if (!file->flush())
        throw std::runtime_error("cannot write " + parts[2]);
}

std::unique_ptr<BusHost> makeHost(const Options& options)
{
    if (options.kernel)
        return std::make_unique<KernelHost>();
    return VirtualBus::makeHost();
}

/// Throws std::invalid_argument for what the user got wrong, else std::runtime_error.
int run(const Options& options)
{
    const auto report = openOutput(options.report);
    const auto trace = openOutput(options.trace);
    Bus bus(makeHost(options));
    announce(options, bus);
    const Script script(bus, options.units);
    const std::vector<ScriptAction> actions = readScript(options.script, script);
    std::unique_ptr<ControlPipe> control;
    if (!options.control.empty())
        control = std::make_unique<ControlPipe>(options.control);
    for (const LabelledUnit& unit : options.units) {
        if (unit.plugged)
            bus.plug(unit.unit);
    }

    Scheduler scheduler;
    ChildProcess child(options.command);
    for (const ScriptAction& action : actions)
        schedule(scheduler, action);
    const int status = child.wait(control ? control->descriptor() : -1,
                                  [&] { takeControlLines(*control, script, scheduler); });
    scheduler.stop();

    // A command may end while a unit that it has flashed is still on its way back.
    if (!bus.waitUntilSettled(settleTime))
        std::cerr << "virtualbus: a unit is still about to leave or return\n";
    for (const LabelledUnit& unit : options.units) {
        writeReport(report ? *report : std::cerr, unit, bus.isPlugged(unit.unit));
        if (trace)
            writeTrace(*trace, unit);
    }
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    try {
        const Options options = parseArguments(argc, argv);
        if (options.help) {
            std::cout << usage << unitOptionHelp << '\n' << Script::help();
            return 0;
        }
        if (!options.image.empty()) {
            writeImage(options.image);
            return 0;
        }
        if (!options.kernel)
            ensurePreload(argv);
        ChildProcess::blockSignals();
        return run(options);
    } catch (const std::invalid_argument& error) {
        std::cerr << "virtualbus: " << error.what() << "\n\n" << usage;
        return exitUsage;
    } catch (const std::exception& error) {
        std::cerr << "virtualbus: " << error.what() << '\n';
        return exitCannotRun;
    }
}
