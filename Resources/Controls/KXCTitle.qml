// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A title with an optional image button, above a line.
ColumnLayout {
    id: titleColumn

    property alias title: titleLabel.text
    property alias pointSize: titleLabel.pointSize
    property alias titleButton: imageButton
    property url imageSource: ""

    spacing: 5

    RowLayout {
        Layout.fillWidth: true

        KXCLabel {
            id: titleLabel

            Layout.fillWidth: true
            pointSize: 20
            textColor: Style.TextDarkColor
            Accessible.role: Accessible.Heading
        }

        Button {
            id: imageButton

            objectName: titleColumn.objectName + "Button"
            Layout.preferredWidth: 30
            Layout.preferredHeight: 30
            visible: titleColumn.imageSource.toString() !== ""
            padding: 3
            horizontalPadding: padding
            Accessible.name: titleLabel.text

            background: Rectangle {
                color: "transparent"
                border.width: imageButton.visualFocus ? 2 : 0
                border.color: Style.TextFieldFocusBorder
            }

            contentItem: Image {
                source: titleColumn.imageSource
                sourceSize: Qt.size(24, 24)
                fillMode: Image.PreserveAspectFit
            }

            HandCursorArea {
            }
        }
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.preferredHeight: 2
        color: Style.BordersColor
    }
}
