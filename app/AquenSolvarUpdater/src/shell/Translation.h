#pragma once

#include <QStringList>

class QCoreApplication;

namespace AquenSolvar {

/// The first of a person's languages that the user interface speaks.
/// @param uiLanguages BCP 47 names in the order of preference, as QLocale::uiLanguages() gives them
/// @return the translation's suffix, such as "de" or "pt_BR"; empty for English, which is built in
///         and also stands in when none of the languages is spoken
QString translationFor(const QStringList& uiLanguages);

/// Lets the texts that are made from now on be of that language. Before the documents are loaded,
/// once; GUI thread. Numbers, dates and log lines are not affected.
/// @param suffix as translationFor() gives it; nothing happens when it is empty
/// @return false, with a warning in the log, when the program has no such translation
bool installTranslation(QCoreApplication& application, const QString& suffix);

} // namespace AquenSolvar
