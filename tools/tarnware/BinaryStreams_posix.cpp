// SPDX-License-Identifier: LicenseRef-Proprietary
#include "tarnware/BinaryStreams.h"

void makeStreamsBinary() {} // they are
