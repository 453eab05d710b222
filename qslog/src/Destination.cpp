// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Destination.h"

#include <QRegularExpression>

namespace QsLogging {

Destination::~Destination() = default;

bool Destination::rotate()
{
    return true;
}

QString withoutColours(const QString& text)
{
    // Never destroyed: threads may log while the process ends.
    static const QRegularExpression& colourEscape =
        *new QRegularExpression(QStringLiteral("\x1b\\[[0-9;]+m"));
    QString plain = text;
    return plain.remove(colourEscape);
}

} // namespace QsLogging
