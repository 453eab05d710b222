// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

/// Lets standard input and output pass bytes through unchanged, where the platform would translate
/// line ends. Before their first use; main thread.
void makeStreamsBinary();
