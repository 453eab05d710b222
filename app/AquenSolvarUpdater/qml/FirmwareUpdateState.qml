// SPDX-License-Identifier: LicenseRef-Proprietary
import QtQuick 2.9
import QtQml.StateMachine 1.0
import AquenSolvar 1.0
import AquenSolvar.Tasks 1.0
import qslog 1.0 as QsLog
import "."

// One firmware update of one unit, and the views that the window shows during it. A unit is not paired
// with its bootloader: the first bootloader that the watcher announces is used.
State {
    id: root

    property var selectedDevice
    property AqSolWatcher aqSolWatcher

    readonly property Item progressView: Item {
        ProgressBar {
            id: progressBar

            objectName: "progressBar"
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            height: Style.bigGridSize
            percentage: _updatingState.task ? _updatingState.task.progress : 0
            visiblePercentage: root._ended ? 1 : Math.min(percentage, animatedPercentage)
            onPercentageChanged: QsLog.FLog.info("Progress: " + percentage)
        }
    }
    readonly property Item controlView: Rectangle {
        color: Style.lightAccentColor
        border.width: 1
        border.color: Style.accentColor(color)

        BaseButton {
            id: doneButton

            objectName: "doneButton"
            anchors.right: parent.right
            anchors.bottom: parent.bottom
            anchors.margins: Style.baseGridSize
            //: Button (20 letters; CJK 10): leaves the update after its end, good or bad, for the list.
            text: qsTr("Done")
            enabled: root._ended
            onClicked: root.requestFinished()
        }
    }
    readonly property alias failed: _errorDuringUpdateState.active
    readonly property bool _ended: _updateFinishedState.active || _errorDuringUpdateState.active

    // The update has ended, successfully or not; the bar shows the text.
    signal ended(string text)
    signal requestError
    signal requestFinished

    // Stops a running download before the window closes. The unit stays in its bootloader, and its
    // update can be resumed.
    function stopUpdate() {
        if (_taskState.active)
            _updatingState.task.stopUpdate();
    }

    initialState: _updatingState
    onEntered: QsLog.FLog.info("FirmwareUpdateState")

    SignalTransition {
        signal: root.requestFinished
        targetState: _finalState
        onTriggered: {
            root.selectedDevice = undefined;
            _updatingState.task.resetProgress();
        }
    }

    State {
        id: _updatingState

        property AquenSolvarFirmwareUpdateTask task: AquenSolvarFirmwareUpdateTask {}

        initialState: _dropToBootloaderState
        onEntered: {
            QsLog.FLog.info("UpdatingState");
            QsLog.FLog.info("Updating device: " + root.selectedDevice);
            QsLog.FLog.info("Updating device with serial: "
                            + (root.selectedDevice ? root.selectedDevice.serialName : ""));
            //: Progress bar (70 letters; CJK 40): the first moment of an update.
            progressBar.progressBarText = qsTr("Preparing to update firmware…");
        }

        State {
            id: _dropToBootloaderState

            signal requestStartTask

            onEntered: {
                QsLog.FLog.info("DropToBootloaderState");
                if (root.selectedDevice && root.selectedDevice.isDfu) {
                    QsLog.FLog.info("Device already in Dfu, skipping DropToBootloaderState.");
                    _updatingState.task = AquenSolvarTaskFactory.makeFirmwareUploadTask(root.selectedDevice);
                    requestStartTask();
                    return;
                }
                //: Progress bar (70 letters; CJK 40): the unit restarts into its bootloader.
                progressBar.progressBarText = qsTr("Preparing device to receive update…");
                // The unit may have been unplugged since it was selected.
                if (!root.selectedDevice || !root.selectedDevice.dropToBootloader()) {
                    QsLog.FLog.info("Error while dropping to boot loader.");
                    //: Progress bar (70 letters; CJK 40): the unit refused to restart into its
                    //: bootloader, the small program that receives firmware.
                    progressBar.progressBarText = qsTr("Error while dropping to boot loader.");
                    root.requestError();
                }
            }

            SignalTransition {
                signal: root.aqSolWatcher.addedDFUDevice
                targetState: _taskState
                onTriggered: {
                    QsLog.FLog.info("Dfu device detected after the device dropped to boot loader. " + device);
                    _updatingState.task = AquenSolvarTaskFactory.makeFirmwareUploadTask(device);
                }
            }
            SignalTransition {
                signal: _dropToBootloaderState.requestStartTask
                targetState: _taskState
            }
            SignalTransition {
                signal: root.requestError
                targetState: _errorDuringUpdateState
            }
        }

        State {
            id: _taskState

            onEntered: {
                QsLog.FLog.info("TaskState");
                //: Progress bar (70 letters; CJK 40): firmware is being written; to pull the cable now
                //: would interrupt it.
                progressBar.progressBarText = qsTr("Updating firmware, please leave device connected…");
                if (!_updatingState.task.uploadFirmware()) {
                    QsLog.FLog.info("Error while starting to upload the firmware.");
                    //: Progress bar (70 letters; CJK 40): nothing was sent to the unit, because it
                    //: could not be opened or there is no firmware for it.
                    progressBar.progressBarText = qsTr("Error while starting to upload the firmware.");
                    root.requestError();
                }
            }

            SignalTransition {
                signal: _updatingState.task.uploadFinsihed
                targetState: _restartingDeviceState
            }
            SignalTransition {
                signal: root.requestError
                targetState: _errorDuringUpdateState
            }
            SignalTransition {
                signal: _updatingState.task.uploadError
                targetState: _errorDuringUpdateState
                onTriggered: progressBar.progressBarText = errorString
            }
        }
    }

    State {
        id: _restartingDeviceState

        onEntered: {
            QsLog.FLog.info("RestartingDeviceState");
            //: Progress bar (70 letters; CJK 40): the unit starts its new firmware.
            progressBar.progressBarText = qsTr("Restarting device…");
        }

        SignalTransition {
            signal: root.aqSolWatcher.addedDevice
            targetState: _updateFinishedState
        }
    }

    State {
        id: _updateFinishedState

        onEntered: {
            QsLog.FLog.info("UpdateFinishedState");
            //: Progress bar (70 letters; CJK 40): the unit is back, the update has ended well.
            progressBar.progressBarText = qsTr("Update successful!");
            doneButton.forceActiveFocus();
            root.ended(progressBar.progressBarText);
        }
    }

    State {
        id: _errorDuringUpdateState

        onEntered: {
            QsLog.FLog.error("ErrorDuringUpdateState: Error during updating.");
            doneButton.forceActiveFocus();
            root.ended(progressBar.progressBarText);
        }
    }

    FinalState {
        id: _finalState

        onEntered: QsLog.FLog.info("FirmwareUpdateFinalState")
    }
}
