// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "qslog/Destination.h"

#include <QFile>

namespace QsLogging {

/// Appends plain lines, without colours, to a text file in UTF-8 and flushes each one. Keeps one
/// previous log beside the file, with ".old" added to its name. Reports to LogFailures. Any thread.
class FileDestination : public Destination
{
public:
    /// Opens the file for appending and creates it when absent. If that fails, the destination is
    /// invalid, and each line tries again.
    explicit FileDestination(const QString& path);
    ~FileDestination() override;

    /// Writes and flushes one line; the next one tries again if that fails. A line is lost if the
    /// file cannot be opened. Those that a full disk refuses wait in a buffer of 16 KiB, and are
    /// lost if it is full too.
    void write(const QString& message, Level level) override;

    /// True when the file is open.
    bool isValid() override;

    /// Renames the file to its ".old" name, replacing an earlier one, and opens an empty one. False
    /// if the rename fails: only the earlier ".old" is gone then, and the log goes on in its file.
    bool rotate() override;

    /// Sets the size in bytes past which the next line rotates the file. Below 1 there is no limit,
    /// which is also the initial state. Rotates at once if the file is larger already. Always
    /// returns true.
    bool setMaxSize(qint64 bytes);

private:
    void open();
    bool writeLocked(const QString& line);
    bool rotateLocked();
    void setFailing(bool failing);

    QString m_path;
    std::unique_ptr<QFile> m_file;
    qint64 m_maxSize = -1;
    bool m_failing = false;
};

/// The destination for a file: one object per absolute path for the life of the process. The first
/// request opens the file. Any thread.
std::shared_ptr<FileDestination> fileDestinationFor(const QString& path);

} // namespace QsLogging
