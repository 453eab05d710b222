#pragma once

#include <QString>

namespace QsLogging {

/// The text without its ANSI colour escapes (ESC [ digits and semicolons m). Any thread.
QString withoutColours(const QString& text);

} // namespace QsLogging
