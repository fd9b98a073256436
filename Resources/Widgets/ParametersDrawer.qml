// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Utils/Style.js" as Style

// The place of the parameter boxes in the small layout, at the right edge of the window.
Drawer {
    id: parametersDrawer

    default property alias boxes: smallPanel.boxes
    readonly property alias boxArea: smallPanel.boxArea

    objectName: "parametersDrawer"
    edge: Qt.RightEdge
    modal: false
    interactive: false
    closePolicy: Popup.NoAutoClose
    padding: 0
    leftPadding: Style.BorderWidth
    width: leftPadding + (MainViewModel.ParameterMenuExpanded ? Style.ParametersPanelWidth : Style.SmallMainMenuClosedWidth)
    height: MainViewModel.MainWindowHeight - Style.StatusBarHeight
    position: MainViewModel.SmallWindowSize ? 1 : 0
    visible: MainViewModel.SmallWindowSize
    background: Rectangle {
        color: "white"

        Rectangle {
            anchors.left: parent.left
            width: Style.BorderWidth
            height: parent.height
            color: Style.BordersColor
        }

        Rectangle {
            anchors.right: parent.right
            width: Style.BorderWidth
            height: parent.height
            color: Style.BordersColor
        }
    }

    onActiveFocusChanged: {
        if (!activeFocus)
            MainViewModel.ParameterMenuExpanded = false;
    }

    SmallParametersPanel {
        id: smallPanel

        objectName: "smallParametersPanel"
        anchors.fill: parent
    }
}
