// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QCommandLineParser>

#include <chrono>

namespace AquenSolvar::Cli {

/// The program's command and options. Main thread, with an application object.
class CommandLine
{
public:
    CommandLine();

    /// @param arguments the first of which is the program's name
    /// @return why they are invalid, for people; empty if they are valid
    QString parse(const QStringList& arguments);

    QString command() const { return m_parser.positionalArguments().value(0); }
    QStringList units() const { return m_parser.positionalArguments().mid(1); }
    QString helpText() const { return m_parser.helpText(); }

    // Of the options by name, without dashes.
    bool isSet(const char* option) const { return m_parser.isSet(QLatin1String(option)); }
    QString value(const char* option) const { return m_parser.value(QLatin1String(option)); }
    /// 0 for an option that is not set or invalid.
    std::chrono::milliseconds seconds(const char* option) const;

private:
    QCommandLineParser m_parser;
};

} // namespace AquenSolvar::Cli
