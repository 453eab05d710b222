// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

namespace Common {

/// Restricts where libraries that are loaded from now on are looked for: the program's own folder
/// and the system's, never the current folder or PATH, where others may have put one. For Windows;
/// elsewhere the system does so by itself. First in main().
void restrictLibrarySearch();

} // namespace Common
