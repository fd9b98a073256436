// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtGraphicalEffects 1.15
import "../Utils/Style.js" as Style

// A command of the action bar: an image in a square on the left, a text on the right.
Button {
    id: actionButton

    property url imageSource: ""

    implicitWidth: 150
    implicitHeight: 50
    padding: 0
    Accessible.name: text

    background: Rectangle {
        color: !actionButton.enabled ? Style.ActionButtonDisabledBg : actionButton.down ? Style.ActionButtonTextBgPressed : Style.ActionButtonTextBg

        Rectangle {
            anchors.fill: parent
            z: 1
            color: "transparent"
            border.width: actionButton.visualFocus ? 2 : 0
            border.color: Style.TextFieldFocusBorder
        }
    }

    contentItem: Item {
        Rectangle {
            id: imageSquare

            width: actionButton.height
            height: actionButton.height
            color: actionButton.down ? Style.ActionButtonImageBgPressed : Style.ActionButtonImageBg

            Image {
                id: image

                anchors.centerIn: parent
                width: parent.width / 2
                height: parent.height / 2
                source: actionButton.imageSource
                sourceSize: Qt.size(width, height)
            }

            ColorOverlay {
                anchors.fill: image
                source: image
                color: "#80ffffff"
                visible: !actionButton.enabled
            }
        }

        KXCLabel {
            anchors.left: imageSquare.right
            anchors.right: parent.right
            anchors.leftMargin: 5
            anchors.rightMargin: 5
            anchors.verticalCenter: parent.verticalCenter
            text: actionButton.text
            pointSize: 12
            textColor: actionButton.enabled ? Style.TextDarkColor : Style.ActionButtonDisabledText
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.NoWrap
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 8
            Accessible.ignored: true
        }
    }

    HandCursorArea {
    }
}
