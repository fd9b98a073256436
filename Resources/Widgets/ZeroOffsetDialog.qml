// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Zero-offset calibration, and its undoing by a long press.
Dialog {
    id: zeroOffsetDialog

    // What the dialog is centred on.
    property var mainWindow: null

    function runBlocking(call) {
        busyPopup.run(() => {
            try {
                call();
            } finally {
                zeroOffsetDialog.close();
            }
        });
    }

    objectName: "zeroOffsetDialog"
    title: qsTr("Zero Offset")
    modal: true
    focus: true
    parent: mainWindow !== null ? mainWindow.contentItem : Overlay.overlay
    anchors.centerIn: parent
    width: 500
    height: 250
    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside
    font.family: Style.LetterFontFamily
    // To override warnings is a decision for one calibration.
    onAboutToShow: overrideWarnings.checked = false
    onOpened: overrideWarnings.takeFocus()

    // The calls block: the detour through timers lets the pop-up paint before them.
    Timer {
        id: calibrateTimer

        interval: 1
        onTriggered: zeroOffsetDialog.runBlocking(() => ActivePageViewModel.zeroOffset(overrideWarnings.checked))
    }

    Timer {
        id: restoreTimer

        // From the press until the button is released again.
        property bool isDue: false

        interval: 1
        onTriggered: zeroOffsetDialog.runBlocking(() => ActivePageViewModel.restoreZeroOffsetToFactory())
    }

    BusyPopup {
        id: busyPopup
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 20

        KXCLabel {
            Layout.fillWidth: true
            text: qsTr("Place probe in zero-gauss chamber and click Start. Long press restores factory offset.")
        }

        KXCCheckBox {
            id: overrideWarnings

            objectName: "overrideWarningsBox"
            label: qsTr("Override warnings")
        }

        Item {
            Layout.fillHeight: true
        }

        RowLayout {
            Layout.alignment: Qt.AlignRight
            spacing: 10

            TextButton {
                objectName: "zeroOffsetCancelButton"
                text: qsTr("Cancel")
                onClicked: zeroOffsetDialog.close()
            }

            TextButton {
                objectName: "zeroOffsetStartButton"
                text: qsTr("Start")
                onPressed: restoreTimer.isDue = false
                onPressAndHold: {
                    restoreTimer.isDue = true;
                    restoreTimer.start();
                }
                onReleased: {
                    if (!restoreTimer.running && !restoreTimer.isDue)
                        calibrateTimer.start();
                }
            }
        }
    }
}
