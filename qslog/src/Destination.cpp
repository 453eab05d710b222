// SPDX-License-Identifier: LicenseRef-Proprietary
#include "qslog/Destination.h"

namespace QsLogging {

Destination::~Destination() = default;

bool Destination::rotate()
{
    return true;
}

QString withoutColours(const QString& text)
{
    // Not by a regular expression, whose per-thread data is gone while the process ends.
    QString plain = text;
    int from = 0;
    while ((from = plain.indexOf(QLatin1String("\x1b["), from)) >= 0) {
        int end = from + 2;
        while (end < plain.size() &&
               ((plain[end] >= QLatin1Char('0') && plain[end] <= QLatin1Char('9')) ||
                plain[end] == QLatin1Char(';')))
            ++end;
        if (end > from + 2 && end < plain.size() && plain[end] == QLatin1Char('m'))
            plain.remove(from, end + 1 - from);
        else
            from += 2;
    }
    return plain;
}

} // namespace QsLogging
