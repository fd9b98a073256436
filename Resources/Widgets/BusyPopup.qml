// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15

// Covers the window while a call blocks the event loop; closed only by the code.
Popup {
    id: busyPopup

    property var pendingCall: null

    // Opens the pop-up, lets it be painted, makes the blocking call and closes.
    function run(blockingCall) {
        pendingCall = blockingCall;
        open();
        paintTimer.start();
    }

    objectName: "busyPopup"
    parent: Overlay.overlay
    anchors.centerIn: parent
    modal: true
    focus: true
    closePolicy: Popup.NoAutoClose
    padding: 20
    // Transitions would stand still half-way.
    enter: null
    exit: null

    contentItem: BusyIndicator {
        running: busyPopup.visible
        Accessible.name: qsTr("Busy")
    }

    // A few frames: once the call runs, nothing is painted any more.
    Timer {
        id: paintTimer

        interval: 50
        onTriggered: {
            const blockingCall = busyPopup.pendingCall;
            busyPopup.pendingCall = null;
            // Nothing else can close the pop-up.
            try {
                blockingCall();
            } finally {
                busyPopup.close();
            }
        }
    }
}
