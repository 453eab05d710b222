#pragma once

class QObject;

namespace USB {

class I_USBNotifier;

/// Makes the notifier of the platform that the program was built for, as a child of @p parent.
/// @p window is the application window; Windows delivers its device messages to it.
/// @return null where the platform has no notifier.
I_USBNotifier* makeUSBNotifier(QObject* parent, QObject* window);

} // namespace USB
