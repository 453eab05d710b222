// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/FileIO.h"

#include <QDir>
#include <QFile>
#include <QTextStream>

namespace Common {

QString FileIO::readFile(const QString& path, quint64 simpleCryptKey)
{
    QFile file(path);
    if (!file.exists() || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray contents = file.readAll();
    if (file.error() != QFileDevice::NoError)
        return {};
    if (path.endsWith(QLatin1Char('c')))
        return SimpleCipher(simpleCryptKey).decryptToString(contents);
    // With its length: a NUL byte is no end.
    return QString::fromUtf8(contents.constData(), contents.size());
}

bool FileIO::writeFile(const QString& path, const QString& contents)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return false;
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    stream << contents;
    return true;
}

bool FileIO::makeDirectory(const QString& path)
{
    return QDir().mkpath(path);
}

QString FileIO::encryptToBase64(const QString& contents, quint64 simpleCryptKey)
{
    SimpleCipher cipher(simpleCryptKey);
    return QString::fromLatin1(cipher.encryptToByteArray(contents.toLatin1()).toBase64());
}

QString FileIO::decrypt(const QByteArray& contents, quint64 simpleCryptKey)
{
    return SimpleCipher(simpleCryptKey).decryptToString(contents);
}

} // namespace Common
