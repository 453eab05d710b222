#pragma once

class QQmlApplicationEngine;

namespace AquenSolvar {

/// Registers the native types with QML, adds the import paths, loads qrc:/qml/main.qml and queues
/// the start of the updater's state machine, which runs once the event loop does. Types stay
/// registered for the life of the process; call it once. GUI thread.
/// @return true when the state machine was found and its start queued; false when the document does
///         not load, its root is no window, or no state machine stands below it. The engine's own
///         warnings then say why.
bool loadUserInterface(QQmlApplicationEngine& engine);

} // namespace AquenSolvar
