// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>

#include <stdexcept>

/// A file that cannot be used, with a text for the user: "NAME: reason". UTF-8.
class FileError : public std::runtime_error
{
public:
    FileError(const QString& name, const QString& reason)
        : std::runtime_error((name + QStringLiteral(": ") + reason).toStdString())
    {
    }
};

/// The name by which the user means standard input or output.
bool isStandardStream(const QString& name);

/// The name as error texts have it; "standard input" for "-".
QString inputName(const QString& name);

/// All bytes of a regular file, or of standard input for "-". Throws FileError for anything else,
/// for more than @p limit bytes, and when reading fails.
QByteArray readInput(const QString& name, int limit);

/// Writes a file, which appears only when it is complete and replaces an earlier one; or standard
/// output for "-". Throws FileError when something other than a regular file has that name, when
/// the file is @p source, and when not every byte could be written.
/// @param source the name of the file that the bytes were made of, which stays as it is
void writeOutput(const QString& name, const QByteArray& contents, const QString& source);

/// Writes to standard output. Throws FileError when not every byte could be written.
void writeStandardOutput(const QByteArray& contents);
