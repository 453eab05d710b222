#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariantMap>

/// The texts that the analytics service takes: messages, and the batch that carries them. Pure
/// functions but for the facts of the build and of the running system. Any thread.
namespace Common::Analytics {

/// Who sends.
struct Sender
{
    QString anonymousId;
    QString userId; ///< may be empty: then it is not sent
    QString sessionId;
};

/// A moment as the service gets it: local time, "yyyy-MM-ddTHH:mm:ss", no zone.
QString timestampText(const QDateTime& moment);

/// A message that says who uses the program.
QVariantMap identifyMessage(const Sender& sender, const QString& computerId,
                            const QString& timestamp);

/// A message that says what happened.
QVariantMap trackMessage(const Sender& sender, const QString& computerId, const QString& timestamp,
                         const QString& event, const QVariantMap& properties);

/// The facts of a session's start: the system's width and languages, and the program's language.
QVariantMap sessionProperties();

/// The bytes that a message takes as compact JSON.
int sizeOf(const QVariantMap& message);

/// The body of a post: the messages in their order as compact JSON. It is narrowed to Latin-1,
/// which the service expects: what lies outside becomes a question mark for each UTF-16 unit.
QByteArray batchBody(const QVariantList& messages, const QString& sentAt);

/// The value of the header Authorization: the key's Latin-1 bytes without a colon behind them.
QByteArray authorization(const QString& writeKey);

} // namespace Common::Analytics
