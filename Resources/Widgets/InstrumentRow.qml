// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// One instrument of the list, with the button that connects or disconnects it.
Item {
    id: row

    property bool isActive: false

    signal connectRequested
    signal disconnectRequested

    function interfaceImage(instrumentInterface) {
        switch (instrumentInterface) {
        case 3:
            return "qrc:///Resources/Images/Ethernet.svg";
        case 4:
            return "qrc:///Resources/Images/Serial.svg";
        default:
            return "qrc:///Resources/Images/Usb.svg";
        }
    }

    objectName: "instrumentRow" + index
    height: 50

    RowLayout {
        anchors.fill: parent
        anchors.leftMargin: 10
        anchors.rightMargin: 5
        spacing: 10

        Image {
            Layout.preferredWidth: 25
            Layout.preferredHeight: 25
            source: row.interfaceImage(model.Interface)
            sourceSize: Qt.size(25, 25)
        }

        KXCLabel {
            objectName: "instrumentLabel"
            text: model.DisplayLabel
            pointSize: 10
            wrapMode: Text.NoWrap
        }

        KXCLabel {
            Layout.fillWidth: true
            text: model.RessourceName
            pointSize: 8
            textColor: Style.TextLightColor
            wrapMode: Text.NoWrap
            elide: Text.ElideMiddle
        }

        TextButton {
            objectName: "connectButton" + index
            Layout.preferredHeight: Style.TextButtonHeight
            text: qsTr("Connect")
            visible: !row.isActive
            Accessible.name: qsTr("Connect %1").arg(model.DisplayLabel)
            onClicked: row.connectRequested()
        }

        TextButton {
            objectName: "disconnectButton" + index
            Layout.preferredHeight: Style.TextButtonHeight
            text: qsTr("Disconnect")
            down: true
            visible: row.isActive
            Accessible.name: qsTr("Disconnect %1").arg(model.DisplayLabel)
            onClicked: row.disconnectRequested()
        }
    }

    Rectangle {
        anchors.left: parent.left
        anchors.right: parent.right
        anchors.bottom: parent.bottom
        height: Style.BorderWidth
        color: Style.BordersColor
        opacity: 0.5
    }
}
