#include "shell/Translation.h"

#include "qslog/Log.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <memory>

// Outside of any namespace, as the call wants it.
static void initializeTranslations()
{
    Q_INIT_RESOURCE(AquenSolvarTranslations);
}

namespace AquenSolvar {

namespace {

// Null for a language that the user interface does not speak, empty for English.
QString suffixOf(const QLocale& locale)
{
    switch (locale.language()) {
    case QLocale::English:
        return QLatin1String("");
    case QLocale::German:
        return QStringLiteral("de");
    case QLocale::French:
        return QStringLiteral("fr");
    case QLocale::Spanish:
        return QStringLiteral("es");
    case QLocale::Italian:
        return QStringLiteral("it");
    case QLocale::Japanese:
        return QStringLiteral("ja");
    case QLocale::Korean:
        return QStringLiteral("ko");
    case QLocale::Portuguese:
        return QStringLiteral("pt_BR");
    case QLocale::Chinese:
        return locale.script() == QLocale::SimplifiedHanScript ? QStringLiteral("zh_CN")
                                                               : QString();
    default:
        return {};
    }
}

} // namespace

QString translationFor(const QStringList& uiLanguages)
{
    for (const QString& name : uiLanguages) {
        QString suffix = suffixOf(QLocale(name));
        if (!suffix.isNull())
            return suffix;
    }
    return QLatin1String("");
}

bool installTranslation(QCoreApplication& application, const QString& suffix)
{
    if (suffix.isEmpty())
        return true;
    initializeTranslations();
    auto translator = std::make_unique<QTranslator>(&application);
    const QString file = QStringLiteral(":/translations/AquenSolvarUpdater_%1.qm").arg(suffix);
    if (!translator->load(file)) {
        QLOG_WARN() << "No translation of the user interface:" << suffix;
        return false;
    }
    QCoreApplication::installTranslator(translator.release());
    QLOG_INFO() << "Language of the user interface:" << suffix;
    return true;
}

} // namespace AquenSolvar
