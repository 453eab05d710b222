#pragma once

#include <QString>

namespace AquenSolvar::Device {

/// A user text of the download job in English, for the log, whose lines support reads in every
/// country.
/// @param userText as DFUDownloadJob::uploadError() gives it, in the language of the user interface
/// @return the English text; @p userText itself when it is none of the job's. Any thread.
QString englishDownloadText(const QString& userText);

} // namespace AquenSolvar::Device
