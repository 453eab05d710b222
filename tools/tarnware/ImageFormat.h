// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

#include <QByteArray>
#include <QString>

/// Recognises files that hold firmware but are no raw flash image, by the marks of their formats:
/// ELF, Intel HEX, DfuSe files (prefix "DfuSe"), files with a DFU suffix (USB DFU 1.1, appendix B),
/// and bundles. Pure; any thread.
/// @return the format with its article, for error texts; empty if none is recognised
QString formatOtherThanRaw(const QByteArray& contents);
