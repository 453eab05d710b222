// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/Logging/AnalyticsMessage.h"

#include "Common/BuildType.h"
#include "Common/BuildVersion.h"
#include "Common/Logging/OSInformation.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QSysInfo>

namespace Common::Analytics {

namespace {

QByteArray compactJson(const QVariantMap& map)
{
    return QJsonDocument(QJsonObject::fromVariantMap(map)).toJson(QJsonDocument::Compact);
}

QVariantMap context(const QString& computerId, const QString& sessionId)
{
    const QString productName = QStringLiteral("Mendrel");
    const QVariantMap app{{QStringLiteral("name"), productName},
                          {QStringLiteral("version"), BuildType::buildTypeString() +
                                                          QLatin1Char(' ') +
                                                          BuildVersion::majorMinorRevisionString()},
                          {QStringLiteral("build"), BuildVersion::buildNumberString()}};
    const QVariantMap system{{QStringLiteral("name"), QSysInfo::productType()},
                             {QStringLiteral("version"), QSysInfo::productVersion()}};
    const QVariantMap library{{QStringLiteral("name"), productName},
                              {QStringLiteral("version"), QStringLiteral("1.0.0")}};
    return {{QStringLiteral("app"), app},
            {QStringLiteral("os"), system},
            {QStringLiteral("library"), library},
            {QStringLiteral("computerId"), computerId},
            {QStringLiteral("sessionId"), sessionId}};
}

QVariantMap baseMessage(const Sender& sender, const QString& computerId, const QString& timestamp)
{
    QVariantMap message{{QStringLiteral("anonymousId"), sender.anonymousId},
                        {QStringLiteral("context"), context(computerId, sender.sessionId)},
                        {QStringLiteral("timestamp"), timestamp}};
    if (!sender.userId.isEmpty())
        message.insert(QStringLiteral("userId"), sender.userId);
    return message;
}

} // namespace

QString timestampText(const QDateTime& moment)
{
    return moment.toString(QStringLiteral("yyyy-MM-ddTHH:mm:ss"));
}

QVariantMap identifyMessage(const Sender& sender, const QString& computerId,
                            const QString& timestamp)
{
    QVariantMap message = baseMessage(sender, computerId, timestamp);
    message.insert(QStringLiteral("type"), QStringLiteral("identify"));
    return message;
}

QVariantMap trackMessage(const Sender& sender, const QString& computerId, const QString& timestamp,
                         const QString& event, const QVariantMap& properties)
{
    QVariantMap message = baseMessage(sender, computerId, timestamp);
    message.insert(QStringLiteral("type"), QStringLiteral("track"));
    message.insert(QStringLiteral("event"), event);
    message.insert(QStringLiteral("properties"), properties);
    return message;
}

QVariantMap sessionProperties()
{
    return {{QStringLiteral("architectureBits"), GetOSArchitectureBits()},
            {QStringLiteral("systemLanguages"), QLocale::system().uiLanguages()},
            {QStringLiteral("selectedLanguage"), QLocale::languageToString(QLocale().language())}};
}

int sizeOf(const QVariantMap& message)
{
    return compactJson(message).size();
}

QByteArray batchBody(const QVariantList& messages, const QString& sentAt)
{
    const QVariantMap batch{{QStringLiteral("batch"), messages},
                            {QStringLiteral("sentAt"), sentAt}};
    return QString::fromUtf8(compactJson(batch)).toLatin1();
}

QByteArray authorization(const QString& writeKey)
{
    return "Basic " + writeKey.toLatin1().toBase64();
}

} // namespace Common::Analytics
