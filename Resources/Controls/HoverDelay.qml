// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Tells when the mouse has been on an item for as long as a tool tip waits. The delay of `ToolTip` itself is not used:
// the window's items share one tool tip, which would go on waiting when its item has left the window together with
// its page, and then find no window to open in. This delay ends with its item; whoever uses it asks for the window too,
// since a page leaves the window before its items are deleted.
Timer {
    property bool hovered: false
    property bool isOver: false

    objectName: "hoverDelay"
    interval: 1000
    running: hovered
    onTriggered: isOver = true
    onHoveredChanged: {
        if (!hovered)
            isOver = false;
    }
}
