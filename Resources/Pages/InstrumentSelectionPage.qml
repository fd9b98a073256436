// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style
import "../Widgets"

Item {
    id: page

    objectName: "instrumentSelectionPage"

    Component {
        id: instrumentInformation

        InstrumentInformation {
        }
    }

    Component {
        id: serialSettings

        SerialSettings {
        }
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 600
            spacing: 0

            TabBar {
                id: tabBar

                objectName: "connectionTabBar"
                background: null

                // Each tab is built anew when it is chosen.
                onCurrentIndexChanged: {
                    tabLoader.active = false;
                    tabLoader.sourceComponent = currentIndex === 0 ? instrumentInformation : serialSettings;
                    tabLoader.active = true;
                }

                KXCTabButton {
                    objectName: "instrumentTab"
                    text: qsTr("Instrument")
                    light: true
                }

                KXCTabButton {
                    objectName: "serialSettingsTab"
                    text: qsTr("Serial settings")
                    light: true
                }
            }

            Rectangle {
                Layout.fillWidth: true
                Layout.fillHeight: true
                color: Style.BoxBackgroundColor

                Loader {
                    id: tabLoader

                    objectName: "connectionTabLoader"
                    anchors.fill: parent
                    anchors.margins: 10
                    anchors.bottomMargin: 20
                    sourceComponent: instrumentInformation
                }
            }
        }

        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.preferredHeight: 100

            Row {
                anchors.verticalCenter: parent.verticalCenter
                width: 600
                leftPadding: 470

                TextButton {
                    objectName: "saveConnectionButton"
                    text: qsTr("Save")
                    onClicked: ConnectionPageViewModel.apply()
                }
            }
        }
    }
}
