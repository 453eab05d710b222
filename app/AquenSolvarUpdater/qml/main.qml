// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQuick.Controls 1.4
import QtQml.StateMachine 1.0
import AquenSolvar 1.0
import USB 1.0
import qslog 1.0 as QsLog
import "."

ApplicationWindow {
    id: window

    // One property, so that the three bounds change together.
    readonly property int _fixedHeight: _firmwareUpdateState.active ? 125 : 400

    //: Title of the window (45 letters), the name of the program, which stays as it is.
    title: qsTr("Aquen/Solvar Updater")
    visible: true
    width: 600
    minimumWidth: 600
    maximumWidth: 600
    minimumHeight: _fixedHeight
    maximumHeight: _fixedHeight
    // After its bounds: Windows cuts a new height to the bounds that the window has at that moment.
    height: _fixedHeight

    Component.onCompleted: QsLog.FLog.info("main.qml component loaded")
    onClosing: _firmwareUpdateState.stopUpdate()

    Action {
        id: _guideAction

        //: Menu of the bottom bar (30 letters; CJK 15): opens the user's guide.
        text: qsTr("User's guide")
        shortcut: "F1"
        // Headings of the guide.
        onTriggered: Help.open(_firmwareUpdateState.failed ? "What the bar can say"
                               : _firmwareUpdateState.active || _aquenSolvarListModel.count > 0
                                 ? "Update a unit" : "No unit in the list")
    }

    Action {
        id: _logFolderAction

        //: Menu of the bottom bar (30 letters; CJK 15): shows the folder of the log files.
        text: qsTr("Folder of the log")
        shortcut: "Ctrl+L"
        onTriggered: Help.openLogFolder()
    }

    LibusbDeviceEnumerator {
        id: _libusbDeviceEnumerator
    }

    AqSolWatcher {
        id: _aqSolWatcher
    }

    AquenSolvarListModel {
        id: _aquenSolvarListModel

        onCountChanged: QsLog.FLog.info("List of devices have changed: " + count)
        onAddedDevice: ShippedFirmware.lookUp(device)
    }

    Rectangle {
        anchors.fill: parent
        color: Style.inverseColor
    }

    Placeholder {
        anchors.top: parent.top
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: footer.top
        anchors.margins: Style.baseGridSize
        contentItem: _firmwareUpdateState.active ? _firmwareUpdateState.progressView
                                                 : _defaultState.aquenSolvarListView
    }

    Placeholder {
        id: footer

        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Style.hugeGridSize + Style.smallGridSize
        contentItem: _firmwareUpdateState.active ? _firmwareUpdateState.controlView
                                                 : _defaultState.controlView
    }

    MouseArea {
        anchors.fill: footer
        acceptedButtons: Qt.RightButton
        Accessible.ignored: true
        onClicked: {
            menuLoader.active = true;
            menuLoader.item.popup();
        }
    }

    // Created on the first use, to keep the start fast.
    Loader {
        id: menuLoader

        active: false
        sourceComponent: Menu {
            MenuItem {
                action: _guideAction
            }
            MenuItem {
                action: _logFolderAction
            }
        }
    }

    StateMachine {
        id: _stateMachine

        objectName: "AquenSolvarUpdaterStateMachine"
        initialState: _initializeWatcherState

        State {
            id: _initializeWatcherState

            signal requestError
            signal requestProceed

            onEntered: {
                QsLog.FLog.info("Initializing watcher...");
                if (!_libusbDeviceEnumerator.init(window)) {
                    requestError();
                    return;
                }
                if (!_aqSolWatcher.init(_libusbDeviceEnumerator)) {
                    requestError();
                    return;
                }
                _aquenSolvarListModel.addAqSolWatcher(_aqSolWatcher);
                Notices.followWatcher(_aqSolWatcher);
                requestProceed();
            }

            SignalTransition {
                signal: _initializeWatcherState.requestError
                targetState: _errorDuringInitState
            }
            SignalTransition {
                signal: _initializeWatcherState.requestProceed
                targetState: _runningState
            }
        }

        State {
            id: _runningState

            initialState: _defaultState
            onEntered: QsLog.FLog.info("Running...")

            State {
                id: _defaultState

                property DeviceListView aquenSolvarListView: DeviceListView {
                    devices: _aquenSolvarListModel
                    searching: _defaultState.active
                    onRequestUpdate: {
                        QsLog.FLog.info("Selected device serial: " + device.serialName);
                        _firmwareUpdateState.selectedDevice = device;
                        _defaultState.requestUpdate();
                    }
                }
                property Item controlView: Rectangle {
                    color: Style.lightAccentColor
                    border.width: 1
                    border.color: Style.accentColor(color)

                    BaseButton {
                        id: quitButton

                        objectName: "quitButton"
                        anchors.left: parent.left
                        anchors.bottom: parent.bottom
                        anchors.margins: Style.baseGridSize
                        //: Button below the list (20 letters; CJK 10): ends the program.
                        text: qsTr("Quit")
                        backgroundColor: Style.inverseColor
                        textColor: Style.darkColor
                        Keys.onTabPressed: event.accepted = !noticeLine.visible
                                                            && _defaultState.aquenSolvarListView.enter(true)
                        Keys.onBacktabPressed: event.accepted = _defaultState.aquenSolvarListView.enter(false)
                        onClicked: window.close()
                    }
                    NoticeLine {
                        id: noticeLine

                        anchors.left: quitButton.right
                        anchors.right: parent.right
                        anchors.verticalCenter: quitButton.verticalCenter
                        anchors.leftMargin: Style.baseGridSize
                        anchors.rightMargin: Style.baseGridSize
                        devices: _defaultState.aquenSolvarListView
                        previous: quitButton
                    }
                }

                signal requestUpdate

                onEntered: QsLog.FLog.info("DefaultState")

                SignalTransition {
                    signal: _defaultState.requestUpdate
                    targetState: _firmwareUpdateState
                }
            }

            FirmwareUpdateState {
                id: _firmwareUpdateState

                aqSolWatcher: _aqSolWatcher
                onEnded: {
                    if (!window.active)
                        DesktopNotification.show(text);
                }

                SignalTransition {
                    signal: _firmwareUpdateState.finished
                    targetState: _defaultState
                }
            }
        }

        FinalState {
            id: _errorDuringInitState

            onEntered: QsLog.FLog.error("Error during initializing...")
        }
    }
}
