// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Renderer.h"

#include <QDir>
#include <QFileInfo>

namespace AquenSolvar {

bool hasRenderDevice()
{
    // The second belongs to a driver that may do without the kernel's own render nodes.
    return !QDir(QStringLiteral("/dev/dri"))
                .entryList({QStringLiteral("renderD*")}, QDir::System)
                .isEmpty() ||
           QFileInfo::exists(QStringLiteral("/dev/nvidiactl"));
}

} // namespace AquenSolvar
