// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QtGlobal>

#include <memory>

namespace Common {

/// Makes standard output and standard error fit for text while it lives. Does nothing where they
/// always are, outside of Windows. There:
/// - a stream that leads nowhere, as in a program with windows, is connected to the console of the
///   parent process if that has one; pipes and files are kept;
/// - text streams that are opened meanwhile write UTF-8, and a console shows it, with colours.
/// The destructor restores the console, which belongs to the parent as well. A program with windows
/// creates one only to print and end: Ctrl+C in that console ends all processes that are connected
/// to it. One at a time; main thread.
class ConsoleOutput
{
    Q_DISABLE_COPY(ConsoleOutput)

public:
    ConsoleOutput();
    ~ConsoleOutput();

private:
    struct Restored;
    std::unique_ptr<Restored> m_restored;
};

} // namespace Common
