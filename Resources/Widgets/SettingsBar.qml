// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Commands of the program itself.
Rectangle {
    id: settingsBar

    property int iconSize: 20
    property string namePrefix: ""

    function prefixed(name) {
        return namePrefix === "" ? name : namePrefix + name.charAt(0).toUpperCase() + name.slice(1);
    }

    color: Style.BoxBackgroundColor

    RowLayout {
        anchors.fill: parent

        StatusBarButton {
            objectName: settingsBar.prefixed("settingsButton")
            Layout.alignment: Qt.AlignCenter
            sourceSize: settingsBar.iconSize
            imageSource: "qrc:///Resources/Images/Settings.svg"
            toolTipText: qsTr("Main settings")
            onClicked: MainViewModel.displaySettingsPage()
        }

        StatusBarButton {
            objectName: settingsBar.prefixed("helpButton")
            Layout.alignment: Qt.AlignCenter
            sourceSize: settingsBar.iconSize
            imageSource: "qrc:///Resources/Images/Help.svg"
            toolTipText: qsTr("Help")
            onClicked: MainViewModel.displayHelp()
        }

        StatusBarButton {
            objectName: settingsBar.prefixed("instrumentSelectionButton")
            Layout.alignment: Qt.AlignCenter
            sourceSize: settingsBar.iconSize
            imageSource: "qrc:///Resources/Images/Connexion.svg"
            toolTipText: qsTr("Instrument selection")
            onClicked: MainViewModel.displayInstrumentSelectionPage()
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.top: parent.top
        height: Style.BorderWidth
        color: Style.BordersColor
    }

    Rectangle {
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        width: Style.BorderWidth
        color: Style.BordersColor
    }
}
