// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/FileAccess.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <cstdio>

namespace {

// Opening a named pipe would block; replacing a device would remove it from the system.
void refuseSpecialFile(const QString& name)
{
    const QFileInfo info(name);
    if (info.isDir())
        throw FileError(name, QStringLiteral("is a folder"));
    if (info.exists() && !info.isFile())
        throw FileError(name, QStringLiteral("is not a regular file"));
}

} // namespace

bool isStandardStream(const QString& name)
{
    return name == QLatin1String("-");
}

QString inputName(const QString& name)
{
    return isStandardStream(name) ? QStringLiteral("standard input") : name;
}

QByteArray readInput(const QString& name, int limit)
{
    QFile file;
    if (isStandardStream(name)) {
        if (!file.open(stdin, QIODevice::ReadOnly))
            throw FileError(inputName(name), file.errorString());
    } else {
        refuseSpecialFile(name);
        file.setFileName(name);
        if (!file.open(QIODevice::ReadOnly))
            throw FileError(name, file.errorString());
    }
    // A pipe delivers as much as it has at a time.
    QByteArray contents;
    QByteArray part;
    do {
        part = file.read(qint64(limit) + 1 - contents.size());
        contents += part;
    } while (!part.isEmpty() && contents.size() <= limit);
    if (file.error() != QFileDevice::NoError)
        throw FileError(inputName(name), file.errorString());
    if (contents.size() > limit)
        throw FileError(inputName(name), QStringLiteral("larger than %1 bytes").arg(limit));
    return contents;
}

void writeOutput(const QString& name, const QByteArray& contents, const QString& source)
{
    if (isStandardStream(name)) {
        writeStandardOutput(contents);
        return;
    }
    refuseSpecialFile(name);
    if (!isStandardStream(source) && QFileInfo(name) == QFileInfo(source))
        throw FileError(name, QStringLiteral("is the source as well"));
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() ||
        !file.commit())
        throw FileError(name, file.errorString());
}

void writeStandardOutput(const QByteArray& contents)
{
    if (std::fwrite(contents.constData(), 1, static_cast<std::size_t>(contents.size()), stdout) !=
            static_cast<std::size_t>(contents.size()) ||
        std::fflush(stdout) != 0)
        throw FileError(QStringLiteral("standard output"), qt_error_string());
}
