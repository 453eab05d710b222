#pragma once

#include "qslog/Destination.h"

#include <QFile>
#include <QTextStream>

namespace QsLogging {

/// Appends plain lines, without colours, to a text file in UTF-8 and flushes each one. Keeps one
/// generation of old log beside the file, with ".old" added to its name. Any thread.
class FileDestination : public Destination
{
public:
    /// Opens the file for appending, creating it when absent. When that fails the destination stays
    /// invalid and drops what it is given.
    explicit FileDestination(const QString& path);

    void write(const QString& message, Level level) override;

    /// True when the file is open.
    bool isValid() override;

    /// Moves the file to its ".old" name, replacing an earlier one, and opens a fresh one. False,
    /// with nothing changed but the earlier ".old" gone, when the move fails.
    bool rotate() override;

    /// Sets the size in bytes past which the next line rotates the file; below 1 there is no limit,
    /// which is also the initial state. A file that is larger already is rotated at once. Always
    /// answers true.
    bool setMaxSize(qint64 bytes);

private:
    void open(const QString& path);
    bool rotateLocked();

    std::shared_ptr<QFile> m_file;
    std::shared_ptr<QTextStream> m_stream;
    qint64 m_maxSize = -1;
};

/// The destination for a file: one object per absolute path for the life of the process. A new one
/// opens its file at once. Any thread.
std::shared_ptr<FileDestination> fileDestinationFor(const QString& path);

} // namespace QsLogging
