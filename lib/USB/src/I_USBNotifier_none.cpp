// SPDX-License-Identifier: LicenseRef-Proprietary
#include "USB/I_USBNotifier.h"

namespace USB {

I_USBNotifier* I_USBNotifier::create(QObject* /*parent*/, QObject* /*window*/)
{
    return nullptr;
}

} // namespace USB
