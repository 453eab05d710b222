#pragma once

#include "Common/SimpleCipher.h"

#include <QObject>

namespace Common {

/// Text files, directories and the cipher, for QML (singleton FileIO) and for native code. Failures
/// are told by the result alone: an empty text or false. No state; any thread.
class FileIO : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /// The text of a file in UTF-8. A path that ends with the letter "c" names an enciphered file,
    /// which is deciphered with the key. Empty when the file is missing, unreadable or damaged.
    Q_INVOKABLE static QString readFile(const QString& path,
                                        quint64 simpleCryptKey = defaultCipherKey);

    /// Replaces the file with this text in UTF-8, with the platform's line ends. Answers whether
    /// the file could be opened.
    Q_INVOKABLE static bool writeFile(const QString& path, const QString& contents);

    /// Makes the directory with all missing parents; true when it exists afterwards.
    Q_INVOKABLE static bool makeDirectory(const QString& path);

    /// The envelope, in Base64, of the text in Latin-1; a character outside Latin-1 becomes "?".
    Q_INVOKABLE static QString encryptToBase64(const QString& contents,
                                               quint64 simpleCryptKey = defaultCipherKey);

    /// The UTF-8 text in a raw envelope. Not the reverse of encryptToBase64(): no Base64 here.
    Q_INVOKABLE static QString decrypt(const QByteArray& contents,
                                       quint64 simpleCryptKey = defaultCipherKey);
};

} // namespace Common
