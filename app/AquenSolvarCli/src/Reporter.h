// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "cli/CommandLine.h"

#include <QJsonObject>

namespace AquenSolvar::Cli {

/// What the commands print on standard output: lines for people, or one JSON object for each event
/// (docs/command-line.md). Errors go to standard error as text in either form. Main thread.
class Reporter
{
public:
    /// Takes the options "json" and "quiet", which leaves only errors.
    explicit Reporter(const CommandLine& commandLine);

    /// Prints @p text, or as JSON the event with these properties. An empty text prints no line.
    void event(const char* name, const QJsonObject& properties, const QString& text);

    /// The event "progress": on a terminal a bar, which the next line replaces.
    void progress(const QString& port, float fraction);

    /// Prints to standard error; as JSON also the event "error".
    void error(int status, const QString& message);

private:
    void print(const QString& text);

    bool m_json;
    bool m_text;
    bool m_terminal;
    bool m_barShown = false;
};

} // namespace AquenSolvar::Cli
