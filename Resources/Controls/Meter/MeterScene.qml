// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtDataVisualization 1.2
import "../../Utils/Style.js" as Style

// The arrow of the field among three labelled axes. A stage without data series: all on it are custom items. A scene
// that does not change draws no frames. It can outlive the page that shows it: see SceneKeeper.
Scatter3D {
    id: scene

    readonly property string meshes: ":/Resources/Mesh/"
    // Null while the scene is closed.
    property QtObject viewModel: null
    readonly property bool hasMeasurement: viewModel !== null && ActiveOperation.RecordingManager.NumBlocks > 0
    readonly property vector3d axisScaling: Qt.vector3d(0.2, 0.45, 0.2)
    readonly property vector3d labelScaling: Qt.vector3d(2, 2, 2)
    // Handlers cannot be written for signals whose names begin with a capital; a property that follows has its own.
    readonly property bool isMeasureReady: viewModel !== null && viewModel.NewMeasureReady
    property bool isOpen: false
    property bool hasFieldVector: false
    property bool isFieldVectorAdded: false

    function open() {
        viewModel = ActivePageViewModel;
        isOpen = true;
        const camera = scene.scene.activeCamera;
        camera.cameraPreset = Settings.Meter3DCameraPreset;
        camera.zoomLevel = Settings.Meter3DZoomLevel;
        if (hasMeasurement && isMeasureReady)
            showFieldVector();
    }

    function close() {
        isOpen = false;
        viewModel = null;
        hasFieldVector = false;
    }

    // Turns what lies along the mesh of the arrow, its Y axis, to the Z axis, from which the view model's rotation
    // starts: the product of the two.
    function meshRotation(scalar, x, y, z) {
        const half = Math.SQRT1_2;
        return Qt.quaternion(half * (scalar - x), half * (scalar + x), half * (y + z), half * (z - y));
    }

    // A direction that is not a number leaves the arrow as it is.
    function showFieldVector() {
        const rotation = meshRotation(viewModel.QuatScalar, viewModel.QuatX, viewModel.QuatY, viewModel.QuatZ);
        if (!isFinite(rotation.scalar + rotation.x + rotation.y + rotation.z))
            return;
        fieldVector.rotation = rotation;
        // Added once and for all: an item that was let go of has lost its texture.
        if (!isFieldVectorAdded)
            addCustomItem(fieldVector);
        isFieldVectorAdded = true;
        hasFieldVector = true;
    }

    property Custom3DItem fieldVector: Custom3DItem {
        meshFile: scene.meshes + "ArrowMesh.obj"
        textureFile: scene.meshes + "RedTexture.png"
        scaling: Qt.vector3d(0.7, 0.7, 0.7)
        shadowCasting: false
        // A measurement that was let go of leaves no direction behind.
        visible: scene.hasMeasurement && scene.hasFieldVector
    }

    property Custom3DItem xAxisArrow: Custom3DItem {
        meshFile: scene.meshes + "ArrowMesh.obj"
        textureFile: scene.meshes + "RedTexture.png"
        scaling: scene.axisScaling
        rotation: Qt.quaternion(0.7071067690849304, 0, 0, -0.7071067690849304)
        shadowCasting: false
    }

    property Custom3DItem yAxisArrow: Custom3DItem {
        meshFile: scene.meshes + "ArrowMesh.obj"
        textureFile: scene.meshes + "GreenTexture.png"
        scaling: scene.axisScaling
        rotation: Qt.quaternion(1, 0, 0, 0)
        shadowCasting: false
    }

    property Custom3DItem zAxisArrow: Custom3DItem {
        meshFile: scene.meshes + "ArrowMesh.obj"
        textureFile: scene.meshes + "BlueTexture.png"
        scaling: scene.axisScaling
        rotation: Qt.quaternion(0.7071067690849304, 0.7071067690849304, 0, 0)
        shadowCasting: false
    }

    property Custom3DItem rotationArrow: Custom3DItem {
        meshFile: scene.meshes + "RotationArrowMesh.obj"
        textureFile: scene.meshes + "GrayTexture.png"
        scaling: Qt.vector3d(0.5, 0.5, 0.5)
        rotation: scene.viewModel ? Qt.quaternion(scene.viewModel.RotQuatScalar, scene.viewModel.RotQuatX,
                                                  scene.viewModel.RotQuatY, scene.viewModel.RotQuatZ)
                                  : Qt.quaternion(1, 0, 0, 0)
        shadowCasting: false
        visible: scene.viewModel !== null && scene.viewModel.RotEnable && scene.viewModel.RotVisible
    }

    property Custom3DLabel xLabel: Custom3DLabel {
        text: qsTr("X")
        textColor: "red"
        position: Qt.vector3d(0.5, 0, 0)
        scaling: scene.labelScaling
        backgroundEnabled: false
        borderEnabled: false
        facingCamera: true
        shadowCasting: false
    }

    property Custom3DLabel yLabel: Custom3DLabel {
        text: qsTr("Y")
        textColor: "green"
        position: Qt.vector3d(0, 1.3, 0)
        scaling: scene.labelScaling
        backgroundEnabled: false
        borderEnabled: false
        facingCamera: true
        shadowCasting: false
    }

    // The scene counts the positions along Z away from the viewer, the rotations of the items towards him.
    property Custom3DLabel zLabel: Custom3DLabel {
        text: qsTr("Z")
        textColor: "blue"
        position: Qt.vector3d(0, 0, -0.5)
        scaling: scene.labelScaling
        backgroundEnabled: false
        borderEnabled: false
        facingCamera: true
        shadowCasting: false
    }

    objectName: "meterScene"
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Direction of the field")
    shadowQuality: AbstractGraph3D.ShadowQualityNone
    selectionMode: AbstractGraph3D.SelectionNone
    orthoProjection: Settings.Meter3DOrthoProjection

    theme: Theme3D {
        type: Theme3D.ThemeQt
        windowColor: Style.BackgroundColor
        // The axes count directions: their numbers would tell nothing.
        labelTextColor: "transparent"
        labelBackgroundEnabled: false
        labelBorderEnabled: false
    }

    axisX: ValueAxis3D {
        min: -1
        max: 1
        segmentCount: 1
        titleVisible: false
    }

    axisY: ValueAxis3D {
        min: -1.3
        max: 1.3
        segmentCount: 1
        titleVisible: false
    }

    axisZ: ValueAxis3D {
        min: -1
        max: 1
        segmentCount: 1
        titleVisible: false
    }

    onIsMeasureReadyChanged: {
        if (isMeasureReady && isOpen)
            showFieldVector();
    }

    Component.onCompleted: {
        for (const item of [xAxisArrow, yAxisArrow, zAxisArrow, rotationArrow, xLabel, yLabel, zLabel])
            addCustomItem(item);
    }
}
