// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Utils/Style.js" as Style

// A read-only field with a button that asks for a path: what file and folder selectors have in common.
ColumnLayout {
    id: selector

    property alias label: selectorLabel.text
    property alias value: field.text
    property alias placeHolderText: field.placeholderText
    property string toolTipText: ""
    property alias buttonText: chooseButton.label

    signal chooseRequested

    // The local path of a chosen URL.
    function localPath(url) {
        return decodeURIComponent(url.toString().replace(Utils.isUnix() ? "file://" : "file:///", ""));
    }

    spacing: 4

    KXCLabel {
        id: selectorLabel

        Layout.fillWidth: true
        visible: text !== ""
        Accessible.ignored: true
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 0

        TextField {
            id: field

            objectName: selector.objectName + "Text"
            Layout.fillWidth: true
            Layout.preferredHeight: 30
            leftPadding: 6
            rightPadding: 6
            topPadding: 2
            bottomPadding: 2
            verticalAlignment: TextInput.AlignVCenter
            readOnly: true
            selectByMouse: true
            selectionColor: Style.TextFieldFocusBorder
            selectedTextColor: Style.BackgroundColor
            font.family: Style.LetterFontFamily
            font.pointSize: 9
            color: Style.TextDarkColor
            // The field would cut off the end of a path, which tells most.
            placeholderTextColor: "transparent"
            Accessible.name: selectorLabel.text
            ToolTip.text: selector.toolTipText
            ToolTip.visible: hoverDelay.isOver && selector.toolTipText !== "" && Window.window !== null

            background: Rectangle {
                color: field.enabled ? Style.BackgroundColor : Style.DisabledColor
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
            }

            HoverDelay {
                id: hoverDelay

                hovered: field.hovered
            }

            KXCLabel {
                anchors.fill: parent
                anchors.leftMargin: field.leftPadding
                anchors.rightMargin: field.rightPadding
                visible: field.text === ""
                text: field.placeholderText
                pointSize: field.font.pointSize
                textColor: Style.TextLightColor
                verticalAlignment: Text.AlignVCenter
                wrapMode: Text.NoWrap
                elide: Text.ElideLeft
                Accessible.ignored: true
            }
        }

        GraphToolButton {
            id: chooseButton

            objectName: selector.objectName + "Button"
            imageSource: "qrc:///Resources/Images/Folder.svg"
            onClicked: selector.chooseRequested()
        }
    }
}
