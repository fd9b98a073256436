// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Window 2.15
import QtGraphicalEffects 1.15
import "../Utils/Style.js" as Style

Button {
    id: statusBarButton

    property url imageSource: ""
    property int sourceSize: 20
    property string toolTipText: ""

    implicitWidth: sourceSize + 10
    implicitHeight: sourceSize + 10
    padding: 5
    horizontalPadding: padding
    Accessible.name: toolTipText
    ToolTip.text: toolTipText
    ToolTip.visible: hoverDelay.isOver && toolTipText !== "" && Window.window !== null
    ToolTip.timeout: 5000

    background: Rectangle {
        color: "transparent"
        border.width: statusBarButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    contentItem: Item {
        Image {
            anchors.centerIn: parent
            source: statusBarButton.imageSource
            sourceSize: Qt.size(statusBarButton.sourceSize, statusBarButton.sourceSize)
            layer.enabled: statusBarButton.down
            layer.effect: ColorOverlay {
                color: "darkgray"
            }
        }
    }

    HoverDelay {
        id: hoverDelay

        hovered: statusBarButton.hovered
    }

    HandCursorArea {
    }
}
