// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/BinaryStreams.h"

#include <cstdio>
#include <fcntl.h>
#include <io.h>

void makeStreamsBinary()
{
    _setmode(_fileno(stdin), _O_BINARY);
    _setmode(_fileno(stdout), _O_BINARY);
}
