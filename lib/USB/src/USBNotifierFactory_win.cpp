#include "USB/USBNotifierFactory.h"
#include "USB/WindowsUSBNotifier.h"

#include <QWindow>

namespace USB {

I_USBNotifier* makeUSBNotifier(QObject* parent, QObject* window)
{
    const auto* nativeWindow = qobject_cast<QWindow*>(window);
    return new WindowsUSBNotifier(parent, nativeWindow != nullptr ? nativeWindow->winId() : 0);
}

} // namespace USB
