// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Utils/KeyboardFocus.js" as KeyboardFocus
import "../Utils/Style.js" as Style

// The parameter boxes of a page, given as children, under each other.
ColumnLayout {
    id: panel

    default property alias boxes: boxColumn.data
    // Where boxes that move between panels find their place.
    readonly property alias boxArea: boxColumn
    readonly property Item focusItem: Window.activeFocusItem

    onFocusItemChanged: KeyboardFocus.bringIntoView(focusItem, boxColumn, flickable, flickable.height)
    spacing: 30

    Flickable {
        id: flickable

        objectName: "parametersFlickable"
        Layout.fillWidth: true
        Layout.fillHeight: true
        clip: true
        boundsBehavior: Flickable.StopAtBounds
        contentWidth: width
        contentHeight: boxColumn.implicitHeight

        ScrollBar.vertical: ScrollBar {
            policy: ScrollBar.AlwaysOn
            width: Style.ParametersScrollBarWidth
        }

        Column {
            id: boxColumn

            width: flickable.width - Style.ParametersScrollBarWidth
            spacing: 10
            bottomPadding: 10
        }
    }
}
