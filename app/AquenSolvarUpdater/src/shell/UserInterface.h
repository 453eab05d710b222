// SPDX-License-Identifier: LicenseRef-Proprietary
#pragma once

class QQmlApplicationEngine;
class QQmlEngine;

namespace AquenSolvar {

class InstanceGuard;

/// Registers the native types with QML and adds the import paths, so that the application's
/// documents and modules load in @p engine. Types stay registered until the process ends. GUI
/// thread.
void prepareEngine(QQmlEngine& engine);

/// Prepares the engine, loads qrc:/qml/main.qml and queues the start of the updater's state
/// machine for the event loop. Once per engine. GUI thread.
/// @param guard lets the window show that another copy is running; must outlive the engine; not
///        owned; null shows nothing
/// @return true when the start is queued; false when the document does not load, its root is no
///         window, or the window has no state machine. The engine's warnings then give the reason.
bool loadUserInterface(QQmlApplicationEngine& engine, InstanceGuard* guard = nullptr);

} // namespace AquenSolvar
