// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Controls"
import "../Utils/Style.js" as Style

// Facts of the instrument and the last log line.
Rectangle {
    id: statusBar

    signal openLogMessage

    color: Style.BoxBackgroundColor

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: Style.BorderWidth
        color: Style.BordersColor
    }

    RowLayout {
        anchors.fill: parent
        anchors.topMargin: 5
        anchors.leftMargin: 5
        anchors.rightMargin: 5
        spacing: 20

        StatusBarEntry {
            objectName: "statusModel"
            caption: qsTr("Model")
            value: MainViewModel.InstrumentModel
        }

        StatusBarEntry {
            objectName: "statusSerial"
            caption: qsTr("Serial")
            value: MainViewModel.InstrumentSerialNumber
        }

        StatusBarEntry {
            objectName: "statusStatus"
            caption: qsTr("Status")
            value: MainViewModel.InstrumentStatus
        }

        StatusBarEntry {
            objectName: "statusInfo"
            Layout.fillWidth: true
            caption: qsTr("Info")
            value: MainViewModel.LastLogMessages.trim()
        }

        Button {
            id: openLogButton

            objectName: "openLogButton"
            Layout.preferredWidth: 50
            Layout.preferredHeight: 18
            Layout.alignment: Qt.AlignVCenter
            Accessible.name: qsTr("Show log messages")
            padding: 0
            onClicked: statusBar.openLogMessage()

            background: Rectangle {
                color: openLogButton.down ? Style.PageButtonDownColor : Style.PageButtonColor
                border.width: openLogButton.visualFocus ? 2 : 0
                border.color: Style.TextFieldFocusBorder
            }

            contentItem: Image {
                source: "qrc:///Resources/Images/ArrowUp.svg"
                sourceSize: Qt.size(14, 14)
                fillMode: Image.Pad
            }

            ToolTip.visible: hoverDelay.isOver && Window.window !== null
            ToolTip.text: qsTr("Show log messages")

            HoverDelay {
                id: hoverDelay

                hovered: openLogButton.hovered
            }

            HandCursorArea {
            }
        }
    }
}
