// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QStringList>

class QCoreApplication;

namespace AquenSolvar {

/// Selects the first of a person's languages that the user interface has. The translations are the
/// files translations/AquenSolvarUpdater_*.ts; the name of each is the locale that it serves, so
/// that "pt" serves all of Portuguese and "zh_Hans" all of simplified Chinese. GUI thread.
/// @param uiLanguages BCP 47 names by preference, as QLocale::uiLanguages() returns them
/// @return the language that the translation is written in, such as "de" or "pt_BR"; empty for
///         English, which is built in and the fallback
QString translationFor(const QStringList& uiLanguages);

/// Translates the texts that are created from now on. Call once, before the documents are loaded;
/// GUI thread. Does not affect numbers, dates and log lines.
/// @param language as translationFor() returns it; empty does nothing
/// @return false, with a warning in the log, when there is no such translation
bool installTranslation(QCoreApplication& application, const QString& language);

} // namespace AquenSolvar
