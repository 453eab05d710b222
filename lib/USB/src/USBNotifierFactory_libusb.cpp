#include "USB/LibusbUSBNotifier.h"
#include "USB/USBNotifierFactory.h"

namespace USB {

I_USBNotifier* makeUSBNotifier(QObject* parent, QObject*)
{
    return new LibusbUSBNotifier(parent);
}

} // namespace USB
