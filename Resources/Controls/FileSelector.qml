// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Dialogs 1.3
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A read-only field with a button that chooses a file.
ColumnLayout {
    id: selector

    property alias label: selectorLabel.text
    property alias value: field.text
    property string filePath: ""
    property string fileName: ""
    property alias placeHolderText: field.placeholderText
    property string toolTipText: ""

    // The local path of a chosen URL.
    function localPath(url) {
        return url.toString().replace(Utils.isUnix() ? "file://" : "file:///", "");
    }

    function acceptUrl(url) {
        fileName = Utils.fileNameFromPath(localPath(url));
        filePath = localPath(url);
    }

    spacing: 4

    FileDialog {
        id: dialog

        title: qsTr("Select a limits file")
        nameFilters: [qsTr("XML format") + " (*.xml)"]
        onAccepted: selector.acceptUrl(fileUrl)
    }

    KXCLabel {
        id: selectorLabel

        pointSize: 10
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 0

        TextField {
            id: field

            objectName: selector.objectName + "Text"
            Layout.fillWidth: true
            Layout.preferredHeight: 30
            readOnly: true
            selectByMouse: true
            font.family: Style.LetterFontFamily
            font.pointSize: 9
            color: Style.TextDarkColor
            Accessible.name: selectorLabel.text
            ToolTip.text: selector.toolTipText
            ToolTip.visible: hovered && selector.toolTipText !== ""
            ToolTip.delay: 1000

            background: Rectangle {
                color: Style.BackgroundColor
                border.width: field.activeFocus ? 2 : 1
                border.color: field.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
            }
        }

        GraphToolButton {
            objectName: selector.objectName + "Button"
            label: dialog.title
            imageSource: "qrc:///Resources/Images/Folder.svg"
            onClicked: dialog.open()
        }
    }
}
