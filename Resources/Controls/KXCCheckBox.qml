// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Utils/Style.js" as Style

// A check box whose label toggles it too.
RowLayout {
    id: checkBoxRow

    property alias label: checkBoxLabel.text
    property alias checked: checkBox.checked
    property string toolTipText: ""

    function takeFocus() {
        checkBox.forceActiveFocus(Qt.TabFocusReason);
    }

    spacing: 8

    CheckBox {
        id: checkBox

        objectName: checkBoxRow.objectName + "Box"
        padding: 0
        Accessible.name: checkBoxLabel.text
        ToolTip.text: checkBoxRow.toolTipText
        ToolTip.visible: hoverDelay.isOver && checkBoxRow.toolTipText !== "" && Window.window !== null

        indicator: Rectangle {
            y: (checkBox.height - height) / 2
            implicitWidth: 18
            implicitHeight: 18
            color: checkBox.enabled ? Style.BackgroundColor : Style.DisabledColor
            border.width: checkBox.visualFocus ? 2 : 1
            border.color: checkBox.visualFocus ? Style.TextFieldFocusBorder : Style.BordersColor

            Rectangle {
                anchors.centerIn: parent
                width: 10
                height: 10
                color: checkBox.enabled ? Style.TextDarkColor : Style.TextLightColor
                visible: checkBox.checked
            }
        }

        HoverDelay {
            id: hoverDelay

            interval: 500
            hovered: checkBox.hovered || labelArea.containsMouse
        }

        HandCursorArea {
        }
    }

    KXCLabel {
        id: checkBoxLabel

        Layout.fillWidth: true
        Accessible.ignored: true

        MouseArea {
            id: labelArea

            anchors.fill: parent
            enabled: checkBoxRow.enabled
            hoverEnabled: true
            cursorShape: Qt.PointingHandCursor
            onClicked: checkBox.toggle()
        }
    }
}
