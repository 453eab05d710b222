// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QVariantMap>

/// The texts that the analytics service accepts: messages and the batch that carries them. Pure
/// functions except for the facts of the build and of the running system. Any thread.
namespace Common::Analytics {

/// The sender of messages.
struct Sender
{
    QString anonymousId;
    QString userId; ///< sent unless empty
    QString sessionId;
};

/// Local time as the service expects it: "yyyy-MM-ddTHH:mm:ss", no zone.
QString timestampText(const QDateTime& moment);

/// A message that identifies the user.
QVariantMap identifyMessage(const Sender& sender, const QString& computerId,
                            const QString& timestamp);

/// A message that reports an event.
QVariantMap trackMessage(const Sender& sender, const QString& computerId, const QString& timestamp,
                         const QString& event, const QVariantMap& properties);

/// Properties of the event that starts a session: the system's width and languages, and the
/// program's language.
QVariantMap sessionProperties();

/// The size of a message as compact JSON, in bytes.
int sizeOf(const QVariantMap& message);

/// The body of a post: the messages in their order as compact JSON, narrowed to Latin-1 as the
/// service expects. Each UTF-16 unit outside Latin-1 becomes a question mark.
QByteArray batchBody(const QVariantList& messages, const QString& sentAt);

/// The value of the header Authorization: the key's Latin-1 bytes in Base64, no colon added.
QByteArray authorization(const QString& writeKey);

} // namespace Common::Analytics
