// SPDX-License-Identifier: LicenseRef-Proprietary
#include "support/DebugOutput.h"

#include <QTemporaryFile>

#include <unistd.h>

QString debugOutputOf(const std::function<void()>& action)
{
    QTemporaryFile capture;
    capture.open();
    const int kept = dup(STDERR_FILENO);
    dup2(capture.handle(), STDERR_FILENO);
    action();
    dup2(kept, STDERR_FILENO);
    close(kept);
    capture.seek(0);
    return QString::fromUtf8(capture.readAll());
}
