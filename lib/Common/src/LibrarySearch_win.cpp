// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/LibrarySearch.h"

#include <windows.h>

void Common::restrictLibrarySearch()
{
    SetDefaultDllDirectories(LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    SetDllDirectoryW(L""); // for libraries that replace the default
}
