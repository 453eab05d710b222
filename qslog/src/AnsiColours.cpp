#include "qslog/AnsiColours.h"

#include <QRegularExpression>

namespace QsLogging {

QString withoutColours(const QString& text)
{
    // Never destroyed: a thread may write lines while the process ends.
    static const QRegularExpression& colourEscape =
        *new QRegularExpression(QStringLiteral("\x1b\\[[0-9;]+m"));
    QString plain = text;
    return plain.remove(colourEscape);
}

} // namespace QsLogging
