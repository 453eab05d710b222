// SPDX-License-Identifier: LicenseRef-Proprietary
#include "shell/Renderer.h"

namespace AquenSolvar {

bool hasRenderDevice()
{
    return true; // asking OpenGL itself is quick here
}

} // namespace AquenSolvar
