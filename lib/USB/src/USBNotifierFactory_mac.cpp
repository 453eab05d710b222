#include "USB/USBNotifierFactory.h"

namespace USB {

I_USBNotifier* makeUSBNotifier(QObject*, QObject*)
{
    return nullptr; // there is no notifier for macOS
}

} // namespace USB
