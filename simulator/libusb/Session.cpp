// SPDX-License-Identifier: LicenseRef-Proprietary
#include "control/ControlLines.h"
#include "control/Report.h"
#include "libusb/Host.h"

using namespace VirtualUnit;

namespace {

/// The bus from libusb_init() to libusb_exit(). The environment variable VIRTUALBUS_FOLDER names a
/// folder. Control lines are read from its file "control": those that it begins with before the
/// program sees the bus, appended ones soon after. At the end the files "report" and "trace" are
/// written there. What cannot be read or written ends the program.
struct Session
{
    Session()
    {
        if (!control.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            qFatal("cannot read %s", qPrintable(control.fileName()));
        lines.feed(control.readAll());
        reader = std::thread([this] {
            for (; !ending; std::this_thread::sleep_for(milliseconds(20)))
                lines.feed(control.readAll());
        });
    }

    ~Session()
    {
        ending = true;
        reader.join();
        QFile report(folder + "/report");
        QFile trace(folder + "/trace");
        report.open(QIODevice::WriteOnly);
        trace.open(QIODevice::WriteOnly);
        writeReports(report, trace, bus, units);
    }

    const QString folder = qEnvironmentVariable("VIRTUALBUS_FOLDER");
    QFile control{folder + "/control"};
    std::vector<LabelledUnit> units;
    Host* const host = new Host; ///< the bus's
    Bus bus{std::unique_ptr<BusHost>(host)};
    ControlLines lines{bus, units};
    std::atomic<bool> ending{false};
    std::thread reader;
};

Session*& session()
{
    static Session* current = nullptr;
    return current;
}

} // namespace

Host& VirtualUnit::host()
{
    return *session()->host;
}

API(int) libusb_init(libusb_context**)
{
    session() = new Session;
    return 0;
}

API(void) libusb_exit(libusb_context*)
{
    delete std::exchange(session(), nullptr);
}
