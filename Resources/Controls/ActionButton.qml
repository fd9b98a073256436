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
    horizontalPadding: padding
    Accessible.name: text

    background: Rectangle {
        color: !actionButton.enabled ? Style.ActionButtonDisabledBg : actionButton.down ? Style.ActionButtonTextBgPressed : Style.ActionButtonTextBg
    }

    contentItem: Item {
        Rectangle {
            id: imageSquare

            width: actionButton.height
            height: actionButton.height
            color: actionButton.down ? Style.ActionButtonImageBgPressed : Style.ActionButtonImageBg

            Image {
                anchors.centerIn: parent
                width: parent.width / 2
                height: parent.height / 2
                source: actionButton.imageSource
                sourceSize: Qt.size(width, height)
                layer.enabled: !actionButton.enabled
                layer.effect: ColorOverlay {
                    color: "#80ffffff"
                }
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

    // Over the image, which reaches to the edge.
    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: actionButton.visualFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    HandCursorArea {
    }
}
