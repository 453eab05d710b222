// SPDX-License-Identifier: LicenseRef-Proprietary
#include "cli/CommandLine.h"

#include <QMap>

namespace AquenSolvar::Cli {

CommandLine::CommandLine()
{
    m_parser.setApplicationDescription(
        R"(Lists and updates washing units (Aquen) and curing units (Solvar) on USB.

Commands:
  list    Print the attached units.
  update  Write firmware into a unit: a serial name, "aquen", "solvar" or a port such as 1-2.3;
          without one, the only unit that needs an update.
  watch   Print units as they are attached and removed, until interrupted.
  doctor  Print what support needs to know about this computer.

Exit status: 0 done, 1 update failed, 2 wrong usage, 3 no such unit, 4 no valid firmware,
5 no access to the unit, 6 several units match, 130 interrupted.)");
    m_parser.addOptions({
        {"json", "Print one JSON object for each event."},
        {"quiet", "Print errors only."},
        {"wait", "Wait for a unit.", "SECONDS"},
        {"all", "Update all that match, one after the other."},
        {"bundle", "The firmware bundle to write.", "FILE"},
        {"firmware", "The folder of the bundles.", "FOLDER"},
        {"force", "Update a unit that is up to date, or to older firmware."},
        {"timeout", "Limit for the update of each unit.", "SECONDS"},
    });
    m_parser.addPositionalArgument("COMMAND", "One of the above.");
    m_parser.addPositionalArgument("UNIT", "Of update.", "[UNIT...]");
    m_parser.addHelpOption();
    m_parser.addVersionOption();
}

QString CommandLine::parse(const QStringList& arguments)
{
    static const QMap<QString, QString> optionsOf = {
        {"list", "json quiet wait bundle firmware"},
        {"update", "json quiet all bundle firmware force timeout"},
        {"watch", "json bundle firmware"},
        {"doctor", "firmware"},
    };
    if (!m_parser.parse(arguments))
        return m_parser.errorText();
    if (isSet("help") || isSet("version"))
        return QString();
    if (!optionsOf.contains(command()))
        return "The command is missing or unknown.";
    const QStringList taken = optionsOf[command()].split(' ');
    const QStringList names = m_parser.optionNames();
    for (const QString& name : names) {
        if (!taken.contains(name))
            return QStringLiteral("%1 does not take --%2.").arg(command(), name);
    }
    if (command() != "update" && !units().isEmpty())
        return QStringLiteral("%1 takes no unit.").arg(command());
    // As of an unset variable in a script: it would select more than was meant.
    if ((units() + m_parser.values("bundle") + m_parser.values("firmware")).contains(QString()))
        return "The name of a unit, file or folder is empty.";
    if (isSet("bundle") && isSet("firmware"))
        return "--bundle and --firmware exclude each other.";
    for (const char* option : {"wait", "timeout"}) {
        if (isSet(option) && seconds(option).count() == 0)
            return QStringLiteral("--%1 takes seconds, up to a day.").arg(option);
    }
    return QString();
}

std::chrono::milliseconds CommandLine::seconds(const char* option) const
{
    const double ms = value(option).toDouble() * 1000;
    return std::chrono::milliseconds(ms >= 1 && ms <= 86400000 ? qRound64(ms) : 0);
}

} // namespace AquenSolvar::Cli
