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

    // Keeps the button in sight that the keyboard has reached.
    function bringIntoView() {
        if (ListView.view !== null)
            ListView.view.positionViewAtIndex(index, ListView.Contain);
    }

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
            // As wide as its text, and less where the button needs the place.
            Layout.fillWidth: true
            Layout.maximumWidth: Math.ceil(implicitWidth)
            text: model.DisplayLabel
            pointSize: 10
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
        }

        KXCLabel {
            // The label tells more than the address: what is left of the row is enough.
            Layout.fillWidth: true
            Layout.preferredWidth: 0
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
            onActiveFocusChanged: {
                if (activeFocus)
                    row.bringIntoView();
            }
        }

        TextButton {
            objectName: "disconnectButton" + index
            Layout.preferredHeight: Style.TextButtonHeight
            text: qsTr("Disconnect")
            down: true
            visible: row.isActive
            Accessible.name: qsTr("Disconnect %1").arg(model.DisplayLabel)
            onClicked: row.disconnectRequested()
            onActiveFocusChanged: {
                if (activeFocus)
                    row.bringIntoView();
            }
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
