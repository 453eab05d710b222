#include "support/TempFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtTest>

QString TempFiles::path(const QString& name) const
{
    return QDir(root()).absoluteFilePath(name);
}

QString TempFiles::put(const QString& name, const QByteArray& contents) const
{
    QFile file(path(name));
    if (!QDir().mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly) ||
        file.write(contents) != contents.size())
        QTest::qFail(qPrintable(file.errorString()), __FILE__, __LINE__);
    return file.fileName();
}

QByteArray TempFiles::get(const QString& name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}
