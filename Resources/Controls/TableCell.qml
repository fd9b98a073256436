// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../Utils/Style.js" as Style

// A cell with an optional separator line on the right.
Item {
    id: cell

    property bool separatorVisible: true

    Rectangle {
        anchors.right: parent.right
        width: Style.BorderWidth
        height: parent.height
        color: Style.LineSeparatorColor
        visible: cell.separatorVisible
    }
}
