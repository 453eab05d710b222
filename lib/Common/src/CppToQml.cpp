// SPDX-License-Identifier: LicenseRef-Proprietary
#include "Common/CppToQml.h"

namespace Common {

void CppToQml::qml_assert(bool /*test*/, const QString& /*method*/, const QString& /*file*/,
                          int /*line*/, const QString& /*message*/)
{
}

} // namespace Common
