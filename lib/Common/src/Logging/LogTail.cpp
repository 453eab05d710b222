// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/LogTail.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>

namespace Common {

namespace {

QStringList matchingLines(const QString& logFile, const QString& pattern)
{
    constexpr qint64 most = qint64(1024) * 1024;
    QFile file(logFile);
    // Opening a named pipe would block until another process writes to it.
    if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly))
        return {};
    file.seek(qMax(qint64(0), file.size() - most));
    QString text = QString::fromUtf8(file.read(most));
    static const QRegularExpression colour(QStringLiteral("\x1b\\[[0-9;]*m"));
    return text.remove(colour).split(QLatin1Char('\n')).filter(QRegularExpression(pattern));
}

} // namespace

QStringList lastLogLines(const QString& logFile, const QString& pattern, int count)
{
    const QStringList lines =
        matchingLines(logFile + QStringLiteral(".old"), pattern) + matchingLines(logFile, pattern);
    return lines.mid(qMax(0, lines.size() - count));
}

} // namespace Common
