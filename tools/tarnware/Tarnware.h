// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <QTextStream>

/// The command-line tool that creates, shows and unpacks firmware bundles. Writes results to one
/// stream and errors to the other. Needs an application object, which names the program in the help
/// text. Main thread.
class Tarnware
{
public:
    /// Exit statuses.
    enum Status
    {
        Success = 0,
        BadFile = 1, ///< a file is missing, unreadable, damaged, or no image that a unit could take
        BadUsage = 2
    };

    Tarnware(QTextStream& output, QTextStream& errors);

    /// Runs one command.
    /// @param arguments all of the program's arguments, its own name first
    Status run(const QStringList& arguments);

private:
    Status pack(const QStringList& files);
    Status show(const QStringList& files);
    Status unpack(const QStringList& files);

    Status showOne(const QString& file);
    Status writeFile(const QString& path, const QByteArray& contents);
    Status complain(Status status, const QString& text);
    Status badUsage(const QString& text);

    QCommandLineParser m_parser;
    QCommandLineOption m_help;
    QCommandLineOption m_version;
    QTextStream& m_output;
    QTextStream& m_errors;
};
