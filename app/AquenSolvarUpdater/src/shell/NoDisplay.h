// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QtGlobal>

namespace AquenSolvar {

/// A message handler for the time in which the application object is made. Without a display Qt
/// would advise to reinstall the program and abort; this ends the process with status 1, after a
/// line on standard error. Other messages, such as the cause, are printed as Qt does it.
void exitWithoutDisplay(QtMsgType type, const QMessageLogContext& context, const QString& text);

} // namespace AquenSolvar
