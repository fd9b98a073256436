// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style
import "../Widgets"

Item {
    objectName: "settingsPage"

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        Rectangle {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 600
            color: Style.BoxBackgroundColor

            SettingsPath {
                objectName: "settingsView"
                anchors.fill: parent
                anchors.margins: 10
                anchors.bottomMargin: 20
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 100

            Row {
                anchors.verticalCenter: parent.verticalCenter
                spacing: 350

                TextButton {
                    objectName: "restoreDefaultsButton"
                    width: 150
                    text: qsTr("Restore defaults")
                    onClicked: SettingsPageViewModel.restoreDefaults()
                }

                TextButton {
                    objectName: "saveSettingsButton"
                    text: qsTr("Save")
                    onClicked: SettingsPageViewModel.save()
                }
            }
        }
    }
}
