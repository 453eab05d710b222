// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Translation.h"

#include "qslog/Log.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <memory>

// Outside of any namespace, as the macro requires.
static void initializeTranslations()
{
    Q_INIT_RESOURCE(AquenSolvarTranslations);
}

namespace AquenSolvar {

namespace {

bool load(QTranslator& translator, const QLocale& locale)
{
    initializeTranslations();
    return translator.load(locale, QStringLiteral("AquenSolvarUpdater"), QStringLiteral("_"),
                           QStringLiteral(":/translations"));
}

} // namespace

QString translationFor(const QStringList& uiLanguages)
{
    QTranslator translator;
    for (const QString& name : uiLanguages) {
        const QLocale locale(name);
        if (locale.language() == QLocale::English)
            break;
        if (load(translator, locale))
            return translator.language();
    }
    return QLatin1String("");
}

bool installTranslation(QCoreApplication& application, const QString& language)
{
    if (language.isEmpty())
        return true;
    auto translator = std::make_unique<QTranslator>(&application);
    if (!load(*translator, QLocale(language))) {
        QLOG_WARN() << "No translation of the user interface:" << language;
        return false;
    }
    QCoreApplication::installTranslator(translator.release());
    QLOG_INFO() << "Language of the user interface:" << language;
    return true;
}

} // namespace AquenSolvar
