// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import "../Utils/Style.js" as Style

Button {
    id: toolButton

    property string label: ""
    property url imageSource: ""

    implicitWidth: 30
    implicitHeight: 30
    padding: 0
    horizontalPadding: padding
    Accessible.name: label
    ToolTip.text: label
    ToolTip.visible: hoverDelay.isOver && label !== "" && Window.window !== null

    background: Rectangle {
        color: toolButton.down || toolButton.checked ? Style.PageButtonDownColor : Style.PageButtonColor
        border.width: toolButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    contentItem: Item {
        Image {
            anchors.centerIn: parent
            width: toolButton.width * 0.8
            height: toolButton.height * 0.8
            source: toolButton.imageSource
            sourceSize: Qt.size(width, height)
            opacity: toolButton.enabled ? 1 : 0.4
        }
    }

    HoverDelay {
        id: hoverDelay

        hovered: toolButton.hovered
    }

    HandCursorArea {
    }
}
