// SPDX-License-Identifier: LicenseRef-Proprietary
#include "control/ControlLines.h"

#include <QMap>

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace VirtualUnit {

namespace {

unsigned number(const QString& text)
{
    if (text == QLatin1String("forever"))
        return Fault::Forever;
    bool ok = false;
    const unsigned value = text.toUInt(&ok);
    if (!ok)
        throw std::invalid_argument("not a number: " + text.toStdString());
    return value;
}

} // namespace

QString ControlLines::help()
{
    return QStringLiteral(
        "Control lines:\n"
        "  unit UNIT\n"
        "  plug UNIT | unplug UNIT | replug UNIT [SECONDS]\n"
        "  fault UNIT ACTION [on=REQUEST] [first=N] [times=N|forever] [value=N|forever]\n"
        "    ACTION: stall, silence, short (value: bytes), fail (value: bStatus), leave,\n"
        "    never-return, busy (value: polls), delay (value: ms). REQUEST, counted from now on:\n"
        "    any, or a name as in the file of --trace.\n");
}

void ControlLines::feed(const QByteArray& bytes)
{
    m_pending += bytes;
    for (int end = 0; (end = m_pending.indexOf('\n')) >= 0; m_pending.remove(0, end + 1)) {
        try {
            perform(QString::fromLatin1(m_pending.left(end)).simplified().split(' '));
        } catch (const std::exception& error) {
            std::cerr << "virtualbus: control: " << error.what() << '\n';
        }
    }
}

void ControlLines::perform(const QStringList& words)
{
    const QString& verb = words[0];
    if (verb == QLatin1String("unit")) {
        m_units.push_back(makeUnit(words.mid(1).join(' '), m_units));
        if (m_units.back().plugged)
            m_bus.plug(m_units.back().unit);
        return;
    }
    const QString label = words.value(1);
    const auto found = std::find_if(m_units.begin(), m_units.end(),
                                    [&label](const auto& unit) { return unit.label == label; });
    if (found == m_units.end())
        throw std::invalid_argument("no unit is called " + label.toStdString());
    const P_Unit& unit = found->unit;
    if (verb == QLatin1String("plug") && words.size() == 2) {
        m_bus.plug(unit);
    } else if (verb == QLatin1String("unplug") && words.size() == 2) {
        m_bus.unplug(unit);
    } else if (verb == QLatin1String("replug") && words.size() <= 3) {
        bool ok = false;
        const double seconds = words.value(2, QStringLiteral("0.3")).toDouble(&ok);
        if (!ok || !(seconds >= 0 && seconds <= 86400))
            throw std::invalid_argument("not a time in seconds: " + words[2].toStdString());
        m_bus.replug(unit, milliseconds(qRound(seconds * 1000)));
    } else if (verb == QLatin1String("fault")) {
        unit->addFault(fault(words.mid(2)));
    } else {
        throw std::invalid_argument("unknown line: " + words.join(' ').toStdString());
    }
}

Fault ControlLines::fault(const QStringList& words)
{
    using Action = Fault::Action;
    static const QMap<QString, Action> actions = {
        {"stall", Action::Stall},       {"silence", Action::Silence},
        {"short", Action::ShortAnswer}, {"fail", Action::FailStatus},
        {"leave", Action::LeaveBus},    {"never-return", Action::NeverReturn},
        {"busy", Action::StayBusy},     {"delay", Action::Delay}};
    if (!actions.contains(words.value(0)))
        throw std::invalid_argument("unknown action: " + words.value(0).toStdString());
    QMap<QString, QString> options = {
        {"on", "any"}, {"first", "1"}, {"times", "1"}, {"value", "0"}};
    const QStringList settings = words.mid(1);
    for (const QString& word : settings) {
        const QString key = word.section('=', 0, 0);
        if (!options.contains(key))
            throw std::invalid_argument("unknown option of a fault: " + word.toStdString());
        options[key] = word.section('=', 1);
    }
    Fault result = Fault::on(options["on"].toStdString(), actions[words[0]],
                             number(options["value"]), number(options["first"]));
    result.times = number(options["times"]);
    return result;
}

} // namespace VirtualUnit
