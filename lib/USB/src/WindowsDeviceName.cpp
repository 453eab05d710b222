// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/WindowsDeviceName.h"

#include <QRegularExpression>

namespace USB {

bool parseWindowsDeviceName(const QString& name, quint16& vid, quint16& pid)
{
    static const QRegularExpression ids(QStringLiteral("VID_(....)&PID_(....)"),
                                        QRegularExpression::CaseInsensitiveOption |
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = ids.match(name);
    if (!match.hasMatch())
        return false;
    vid = quint16(match.captured(1).toInt(nullptr, 16));
    pid = quint16(match.captured(2).toInt(nullptr, 16));
    return true;
}

} // namespace USB
