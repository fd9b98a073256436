// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Shows the pointing hand over a control and lets every press through.
MouseArea {
    anchors.fill: parent
    cursorShape: Qt.PointingHandCursor
    onPressed: mouse => {
        mouse.accepted = false;
    }
}
