// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Utils/Style.js" as Style

// A page of the wide main menu.
Button {
    id: menuButton

    property url imageSource: ""
    property bool isCurrent: false

    implicitWidth: Style.MainMenuWidth
    implicitHeight: Style.MainMenuButtonHeight
    padding: 0
    horizontalPadding: padding
    Accessible.name: text

    background: Rectangle {
        color: menuButton.isCurrent || menuButton.down ? Style.BackgroundColor : menuButton.hovered ? Style.darkColor : Style.BoxBackgroundColor
        border.width: menuButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder

        // The page on screen opens into its button: it has no line on the right.
        Rectangle {
            anchors.right: parent.right
            width: Style.BorderWidth
            height: parent.height
            color: Style.BordersColor
            visible: !menuButton.isCurrent
        }

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: Style.BorderWidth
            color: Style.BordersColor
        }
    }

    contentItem: Item {
        Image {
            id: image

            anchors.horizontalCenter: parent.horizontalCenter
            anchors.verticalCenter: parent.verticalCenter
            anchors.verticalCenterOffset: -12
            source: menuButton.imageSource
            sourceSize: Qt.size(48, 48)
        }

        KXCLabel {
            anchors.horizontalCenter: parent.horizontalCenter
            anchors.top: image.bottom
            anchors.topMargin: 6
            text: menuButton.text
            pointSize: 11
            Accessible.ignored: true
        }
    }

    HandCursorArea {
    }
}
