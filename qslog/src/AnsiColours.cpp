#include "AnsiColours.h"

#include <QRegularExpression>

namespace QsLogging {

QString withoutColours(const QString& text)
{
    static const QRegularExpression colourEscape(QStringLiteral("\x1b\\[[0-9;]+m"));
    QString plain = text;
    return plain.remove(colourEscape);
}

} // namespace QsLogging
