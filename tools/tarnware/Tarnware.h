#pragma once

#include <QStringList>
#include <QTextStream>

/// The command-line tool that makes, shows and takes apart firmware bundles. Results go to one
/// stream, complaints to the other. A call does one command and keeps nothing.
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

    /// Runs the command given by the arguments after the program's name.
    Status run(const QStringList& arguments);

private:
    Status pack(const QStringList& arguments);
    Status show(const QStringList& paths);
    Status unpack(const QStringList& arguments);

    Status showOne(const QString& path);
    Status writeFile(const QString& path, const QByteArray& contents);
    Status complain(Status status, const QString& text);
    Status badUsage(const QString& text);

    QTextStream& m_output;
    QTextStream& m_errors;
};
