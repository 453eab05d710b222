// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/LibrarySearch.h"

void Common::restrictLibrarySearch() {}
