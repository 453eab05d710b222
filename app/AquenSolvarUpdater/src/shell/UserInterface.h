#pragma once

class QQmlApplicationEngine;
class QQmlEngine;

namespace AquenSolvar {

/// Registers the native types with QML and adds the import paths, so that the application's
/// documents and modules load in that engine. Types stay registered for the life of the process.
/// GUI thread.
void prepareEngine(QQmlEngine& engine);

/// Prepares the engine, loads qrc:/qml/main.qml and queues the start of the updater's state
/// machine, which runs once the event loop does. Once per engine. GUI thread.
/// @return true when the state machine was found and its start queued; false when the document does
///         not load, its root is no window, or no state machine stands below it. The engine's own
///         warnings then say why.
bool loadUserInterface(QQmlApplicationEngine& engine);

} // namespace AquenSolvar
