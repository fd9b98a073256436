// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import ".."
import "../Chart3D"
import "../../Utils/Style.js" as Style

// The field components of the last block, and beside them its direction: compass and 3-D scene. The shares are taken
// of this item: a share of the layout's own size would have it computed anew while it is computed.
Item {
    id: displayer

    objectName: "componentDisplayer"

    GridLayout {
        anchors.fill: parent
        columns: 3
        rowSpacing: 0
        columnSpacing: 0

        MeterFields {
            Layout.rowSpan: 4
            Layout.fillHeight: true
            Layout.fillWidth: false
            Layout.preferredWidth: displayer.width / 2 - Layout.rightMargin
            Layout.rightMargin: 20
        }

        Rectangle {
            Layout.rowSpan: 4
            Layout.fillHeight: true
            Layout.preferredWidth: Style.BorderWidth
            color: Style.BordersColor
        }

        MeterCompas {
            Layout.fillWidth: true
            Layout.fillHeight: false
            Layout.preferredHeight: Math.round(0.4 * displayer.height)
            Layout.minimumHeight: implicitHeight
            Layout.leftMargin: 10
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.preferredHeight: 20
            color: Style.lightColor
        }

        Item {
            objectName: "sceneToolbar"
            Layout.fillWidth: true
            Layout.preferredHeight: rotationButton.height
            Layout.leftMargin: 10
            Layout.topMargin: 5

            GraphToolButton {
                id: rotationButton

                objectName: "rotationButton"
                label: qsTr("Toggle rotation detection")
                imageSource: "qrc:///Resources/Images/Rotation.svg"
                visible: ActivePageViewModel.RotVisible
                onClicked: ActivePageViewModel.RotEnable = !ActivePageViewModel.RotEnable
            }
        }

        Scene3DLoader {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: 10
            source: Qt.resolvedUrl("MeterScene.qml")
        }
    }
}
