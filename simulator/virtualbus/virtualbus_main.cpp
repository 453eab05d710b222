// SPDX-License-Identifier: LicenseRef-Proprietary
#include "control/ControlLines.h"
#include "control/Report.h"
#include "umockdev/VirtualBus.h"
#include "unit/FirmwareImage.h"
#include "usbip/KernelHost.h"
#include "virtualbus/Command.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QScopeGuard>
#include <QSocketNotifier>
#include <QTextCodec>

#include <fcntl.h>
#include <iostream>
#include <stdexcept>
#include <sys/stat.h>

using namespace VirtualUnit;

namespace {

constexpr int exitUsage = 2;
constexpr int exitCannotRun = 127;

void describe(QCommandLineParser& parser)
{
    parser.setApplicationDescription(
        "Runs a command with virtual units, and nothing else, on its USB bus. The exit\n"
        "status is the command's; 2 for wrong arguments, 127 when it cannot be run or output\n"
        "is lost. At the end there is one line per unit: its mode, firmware version, whether\n"
        "it is on the bus, and length and SHA-256 of what its application flash holds.\n\n" +
        unitOptionHelp() + '\n' + ControlLines::help());
    parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);
    parser.addOptions({
        {{"u", "unit"}, "Put a unit on the bus.", "UNIT"},
        {{"k", "kernel"},
         "Put the units on this machine's own bus, for all its programs; needs root and the "
         "kernel's module vhci-hcd."},
        {{"c", "control"}, "Take lines from a FIFO; it is made if it is not there.", "PATH"},
        {{"r", "report"}, "Write the report there instead of to standard error.", "FILE"},
        {{"t", "trace"}, "Write every control request that the units received.", "FILE"},
        {"make-image", "Write a valid firmware image, and do nothing else.", "VERSION:SIZE:FILE"},
    });
    parser.addHelpOption();
    parser.addOption({"version", "Displays the version of this program."});
    parser.addPositionalArgument("command", "What to run.", "-- COMMAND [ARGUMENT]...");
}

/// Opens the FIFO, into which others write, or makes one. Returns whether it was made.
bool openFifo(QFile& fifo)
{
    const QByteArray name = QFile::encodeName(fifo.fileName());
    const bool made = mkfifo(name, 0600) == 0;
    struct stat facts = {};
    // Both ends, so that it does not end when a writer closes it.
    if (stat(name, &facts) != 0 || !S_ISFIFO(facts.st_mode) ||
        !fifo.open(::open(name, O_RDWR | O_NONBLOCK | O_CLOEXEC), QIODevice::ReadOnly,
                   QFile::AutoCloseHandle))
        throw std::invalid_argument("not a FIFO that can be read: " + name.toStdString());
    return made;
}

void openOutput(QFile& file)
{
    if (!file.open(QIODevice::WriteOnly))
        throw std::invalid_argument("cannot write " + file.fileName().toStdString());
}

void print(const std::string& text)
{
    if (!(std::cout << text << std::flush))
        throw std::runtime_error("cannot write standard output");
}

void writeImage(const QString& order)
{
    const std::string version = firmwareVersion(order.section(':', 0, 0));
    bool isNumber = false;
    const unsigned length = order.section(':', 1, 1).toUInt(&isNumber);
    QFile file(order.section(':', 2));
    if (!isNumber || file.fileName().isEmpty())
        throw std::invalid_argument("not VERSION:SIZE:FILE: " + order.toStdString());
    const Bytes image = makeImage(length, version);
    openOutput(file);
    const auto size = static_cast<qint64>(image.size());
    if (file.write(reinterpret_cast<const char*>(image.data()), size) != size || !file.flush())
        throw std::runtime_error("cannot write " + file.fileName().toStdString());
}

/// Throws std::invalid_argument for an error of the user, else std::runtime_error.
int run(const QCommandLineParser& parser)
{
    std::vector<LabelledUnit> units;
    const QStringList options = parser.values("unit");
    for (const QString& option : options)
        units.push_back(makeUnit(option, units));
    QFile report(parser.value("report"));
    QFile trace(parser.value("trace"));
    if (parser.isSet("report"))
        openOutput(report);
    else
        report.open(stderr, QIODevice::WriteOnly);
    if (parser.isSet("trace"))
        openOutput(trace);
    Bus bus(parser.isSet("kernel") ? std::make_unique<KernelHost>() : VirtualBus::makeHost());
    ControlLines lines(bus, units);
    QFile fifo(parser.value("control"));
    const bool made = parser.isSet("control") && openFifo(fifo);
    const auto remove = qScopeGuard([&] {
        if (made)
            QFile::remove(parser.value("control"));
    });
    std::unique_ptr<QSocketNotifier> notifier;
    if (fifo.isOpen()) {
        notifier = std::make_unique<QSocketNotifier>(fifo.handle(), QSocketNotifier::Read);
        QObject::connect(notifier.get(), &QSocketNotifier::activated, notifier.get(),
                         [&] { lines.feed(fifo.readAll()); });
    }
    for (const LabelledUnit& unit : units) {
        if (unit.plugged)
            bus.plug(unit.unit);
    }
    const int status = runCommand(parser.positionalArguments());
    writeReports(report, trace, bus, units);
    return status;
}

} // namespace

int main(int argc, char** argv)
{
    // Arguments and file names pass through byte by byte, in any encoding.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    blockSignals();
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    describe(parser);
    try {
        if (!parser.parse(QCoreApplication::arguments()))
            throw std::invalid_argument(parser.errorText().toStdString());
        if (parser.isSet("help")) {
            print(parser.helpText().toStdString());
            return 0;
        }
        if (parser.isSet("version")) {
            print("virtualbus " VERSION "\n");
            return 0;
        }
        if (parser.isSet("make-image")) {
            writeImage(parser.value("make-image"));
            return 0;
        }
        if (parser.positionalArguments().isEmpty())
            throw std::invalid_argument("no command to run");
        if (!parser.isSet("kernel"))
            VirtualBus::ensurePreload(argv);
        return run(parser);
    } catch (const std::invalid_argument& error) {
        std::cerr << "virtualbus: " << error.what() << "\n\n" << parser.helpText().toStdString();
        return exitUsage;
    } catch (const std::exception& error) {
        std::cerr << "virtualbus: " << error.what() << '\n';
        return exitCannotRun;
    }
}
