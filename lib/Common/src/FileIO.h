// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include "Common/SimpleCipher.h"

#include <QObject>

namespace Common {

/// Text files, directories and the cipher, for QML (singleton FileIO) and for native code. Failures
/// are reported only through the return value: an empty text or false. Stateless; any thread.
class FileIO : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The text of a file in UTF-8. A path that ends in "c" names an enciphered file, which the key
    /// deciphers. Empty if the file is missing, unreadable or damaged.
    Q_INVOKABLE static QString readFile(const QString& path,
                                        quint64 simpleCryptKey = defaultCipherKey);

    /// Replaces the file with this text in UTF-8, with the platform's line ends. True if the file
    /// could be opened.
    Q_INVOKABLE static bool writeFile(const QString& path, const QString& contents);

    /// Creates the directory and all missing parents. True if it exists afterwards.
    Q_INVOKABLE static bool makeDirectory(const QString& path);

    /// The text in Latin-1, enciphered and in Base64. A character outside Latin-1 becomes "?".
    Q_INVOKABLE static QString encryptToBase64(const QString& contents,
                                               quint64 simpleCryptKey = defaultCipherKey);

    /// The UTF-8 text in a raw envelope. Does not reverse encryptToBase64(): no Base64 here.
    Q_INVOKABLE static QString decrypt(const QByteArray& contents,
                                       quint64 simpleCryptKey = defaultCipherKey);
};

} // namespace Common
