// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Tells of a new version. A window of its own beside the main window.
ApplicationWindow {
    id: dialog

    objectName: "newSoftwareVersionDialog"
    title: qsTr("Software update available")
    flags: Qt.Dialog
    visible: true
    width: 400
    height: minimumHeight
    minimumHeight: Math.max(150, Math.ceil(messageColumn.implicitHeight + 30 + buttonRow.implicitHeight))
    color: "white"
    font.family: Style.LetterFontFamily

    ColumnLayout {
        id: messageColumn

        anchors.fill: parent
        anchors.margins: 15
        spacing: 10

        KXCLabel {
            objectName: "newVersionText"
            Layout.fillWidth: true
            text: qsTr("The new version ") + NewVersion + qsTr(" of this software is available.")
        }

        KXCLinkLabel {
            objectName: "newVersionLink"
            Layout.fillWidth: true
            textBefore: qsTr("Please visit ")
            linkText: Qt.application.domain
            textAfter: qsTr(" to get the latest version.")
            url: SoftwareUpdateWebsite
        }

        Item {
            Layout.fillHeight: true
        }
    }

    footer: Item {
        id: buttonRow

        implicitHeight: 80

        Row {
            anchors.centerIn: parent
            spacing: 20

            TextButton {
                objectName: "skipVersionButton"
                width: 150
                text: qsTr("Skip this version")
                onClicked: {
                    MainViewModel.ignoreSoftwareUpdate(NewVersion);
                    dialog.close();
                }
            }

            TextButton {
                objectName: "ignoreVersionButton"
                width: 150
                focus: true
                text: qsTr("Ignore")
                onClicked: dialog.close()
            }
        }
    }
}
