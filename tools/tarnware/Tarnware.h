// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QStringList>
#include <QTextStream>

#include <optional>

class QCommandLineParser;

/// The command-line tool that creates, shows and unpacks firmware bundles. Writes results to
/// standard output and errors to a stream. Needs an application object, which names the program in
/// the help text. Main thread.
class Tarnware
{
public:
    /// Exit statuses.
    enum Status
    {
        Success = 0,
        BadFile = 1, ///< a file is missing, unreadable, damaged or unsuitable, or cannot be written
        BadUsage = 2
    };

    explicit Tarnware(QTextStream& errors);

    /// Runs one command.
    /// @param arguments all of the program's arguments, its own name first
    Status run(const QStringList& arguments);

private:
    Status runCommand(const QStringList& arguments);
    Status pack(QCommandLineParser& parser, const QStringList& arguments);
    Status show(QCommandLineParser& parser, const QStringList& arguments);
    Status unpack(QCommandLineParser& parser, const QStringList& arguments);

    std::optional<Status> parse(QCommandLineParser& parser, const QStringList& arguments,
                                QStringList& files);
    Status showOne(const QString& name);
    void warnOfName(const QString& name);
    Status complain(Status status, const QString& text);
    Status badUsage(const QCommandLineParser& parser, const QString& text);

    QTextStream& m_errors;
};
