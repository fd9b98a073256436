// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import "../Utils/Style.js" as Style

// An entry of a menu that is closed to its images or expanded.
Button {
    id: smallMenuButton

    property url imageSource: ""
    property int imageSize: 36
    property int imageLeftMargin: 12
    property bool isCurrent: false
    property bool isExpanded: false

    implicitWidth: isExpanded ? Style.SmallMainMenuExpandedWidth : Style.SmallMainMenuClosedWidth
    implicitHeight: Style.SmallMainMenuButtonHeight
    enabled: !isCurrent
    padding: 0
    horizontalPadding: padding
    Accessible.name: text

    background: Rectangle {
        color: smallMenuButton.isCurrent || smallMenuButton.down ? Style.BackgroundColor : smallMenuButton.hovered ? Style.darkColor : Style.BoxBackgroundColor
        border.width: smallMenuButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder

        Rectangle {
            anchors.right: parent.right
            width: Style.BorderWidth
            height: parent.height
            color: Style.BordersColor
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

            anchors.left: parent.left
            anchors.leftMargin: smallMenuButton.imageLeftMargin
            anchors.verticalCenter: parent.verticalCenter
            source: smallMenuButton.imageSource
            sourceSize: Qt.size(smallMenuButton.imageSize, smallMenuButton.imageSize)
        }

        KXCLabel {
            anchors.left: image.right
            anchors.leftMargin: 12
            anchors.verticalCenter: parent.verticalCenter
            text: smallMenuButton.text
            pointSize: 11
            visible: smallMenuButton.isExpanded
            Accessible.ignored: true
        }
    }

    HandCursorArea {
    }
}
