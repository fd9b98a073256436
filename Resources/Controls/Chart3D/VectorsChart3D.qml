// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."
import "../../Utils/Style.js" as Style

// The mapped field as arrows in space, with the tools of the camera above and the length of the arrows below.
ColumnLayout {
    id: chart3D

    property int graphButtonMargin: 5
    readonly property string images: "qrc:/Resources/Images/"

    objectName: "vectorsChart3D"
    spacing: 0

    Component.onCompleted: lengthSlider.value = ActivePageViewModel.SliderValueGraph3D

    Rectangle {
        objectName: "vectorsToolbar"
        Layout.fillWidth: true
        Layout.preferredHeight: isometricButton.height + chart3D.graphButtonMargin
        color: "white"

        Row {
            anchors.right: parent.right
            anchors.rightMargin: chart3D.graphButtonMargin
            anchors.bottom: parent.bottom
            spacing: chart3D.graphButtonMargin
            enabled: sceneLoader.scene !== null

            GraphToolButton {
                id: isometricButton

                objectName: "isometricViewButton"
                label: qsTr("Toggle isometric view")
                imageSource: chart3D.images + "ViewIsometric.svg"
                onClicked: sceneLoader.scene.orthoProjection = !sceneLoader.scene.orthoProjection
            }

            GraphToolButton {
                objectName: "topViewButton"
                label: qsTr("Top")
                imageSource: chart3D.images + "ViewPerspective.svg"
                onClicked: sceneLoader.scene.lookFromTop()
            }

            GraphToolButton {
                objectName: "frontViewButton"
                label: qsTr("Front")
                imageSource: chart3D.images + "ViewFront.svg"
                onClicked: sceneLoader.scene.lookFromFront()
            }

            GraphToolButton {
                objectName: "sideViewButton"
                label: qsTr("Side")
                imageSource: chart3D.images + "ViewRight.svg"
                onClicked: sceneLoader.scene.lookFromSide()
            }
        }
    }

    Scene3DLoader {
        id: sceneLoader

        Layout.fillWidth: true
        Layout.fillHeight: true
        source: Qt.resolvedUrl("VectorsScene.qml")
    }

    Slider {
        id: lengthSlider

        objectName: "vectorLengthSlider"
        Accessible.name: qsTr("Length of the vectors")
        Layout.fillWidth: true
        Layout.preferredHeight: 20
        from: 0
        to: 1
        stepSize: 0.01
        snapMode: Slider.SnapOnRelease
        enabled: sceneLoader.scene !== null
        onMoved: sceneLoader.scene.setArrowLength(value)
        onPressedChanged: {
            if (!pressed)
                ActivePageViewModel.SliderValueGraph3D = value;
        }
    }
}
