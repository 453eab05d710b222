#include "Common/Logging/ComputerId.h"

#include "qslog/Log.h"

#include <QSettings>
#include <QUuid>

namespace Common {

QString computerId()
{
    const QString key = QStringLiteral("SLog/ComputerId");
    QSettings settings;
    if (!settings.contains(key)) {
        settings.setValue(key, QUuid::createUuid().toString());
        settings.sync();
        if (settings.status() != QSettings::NoError)
            QLOG_WARN() << "Could not store the computer id in" << settings.fileName();
    }
    QString id = settings.value(key).toString();
    id.remove(QLatin1Char('{')).remove(QLatin1Char('}'));
    return id;
}

} // namespace Common
