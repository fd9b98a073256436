// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtDataVisualization 1.2
import "../../Utils/Style.js" as Style

// One arrow per mapped place, along the field measured there. A stage without data series: all on it are custom items.
// It can outlive the page that shows it: see SceneKeeper.
Scatter3D {
    id: scene

    // Null while the scene is closed.
    property QtObject viewModel: null
    // Of the strongest field, in the scene's own unit.
    property real arrowLength: 0
    // In the order of the view model's vectors, oldest first.
    property var vectors: []
    readonly property var xRange: viewModel ? [viewModel.XStart, viewModel.XStop] : [0, 1]
    readonly property var yRange: viewModel ? [viewModel.YStart, viewModel.YStop] : [0, 1]
    readonly property var zRange: viewModel ? [viewModel.ZStart, viewModel.ZStop] : [0, 1]

    function open() {
        viewModel = ActivePageViewModel;
        arrowLength = viewModel.SliderValueGraph3D;
        orthoProjection = Settings.Mapping3DOrthoProjection;
        lookFrom(Settings.Mapping3DCameraPreset);
        createAllVectors();
    }

    function close() {
        viewModel = null;
        removeVectors();
    }

    function lookFrom(preset) {
        const camera = scene.scene.activeCamera;
        camera.zoomLevel = Settings.Mapping3DZoomLevel;
        camera.cameraPreset = preset;
    }

    function lookFromTop() {
        lookFrom(Camera3D.CameraPresetDirectlyAbove);
    }

    function lookFromFront() {
        lookFrom(Camera3D.CameraPresetFrontLow);
    }

    function lookFromSide() {
        lookFrom(Camera3D.CameraPresetRightLow);
    }

    // Limits that are not numbers leave the axis as it is. An axis moves an end that the other one would pass, and warns
    // of it: the end that is out of the way comes first. It counts in single precision, where a limit plus one can be
    // that limit.
    function setRange(axis, start, stop) {
        let end = stop > start ? stop : start + 1;
        if (!isFinite(start) || !isFinite(end))
            return;
        if (Math.fround(end) <= Math.fround(start))
            end = start + Math.abs(start) / 1e6;
        if (Math.fround(start) < axis.max) {
            axis.min = start;
            axis.max = end;
        } else {
            axis.max = end;
            axis.min = start;
        }
    }

    // Of the view model's current vector.
    function currentScaling() {
        return Qt.vector3d(0.1, arrowLength * viewModel.Scale / viewModel.MaxScale, 0.1);
    }

    function createVector3D() {
        const vector = vectorComponent.createObject(scene);
        const index = addCustomItem(vector);
        if (index < 0) {
            console.log("3D vector add element error  = " + index);
            return;
        }
        vector.scaling = currentScaling();
        vector.position = Qt.vector3d(viewModel.PosX, viewModel.PosY, viewModel.PosZ);
        vector.rotation = Qt.quaternion(viewModel.QuatScalar, viewModel.QuatX, viewModel.QuatY, viewModel.QuatZ);
        vector.visible = true;
        vectors.push(vector);
        if (vectors.length > viewModel.MaxVectorCount)
            removeCustomItem(vectors.shift());
    }

    function removeVectors() {
        vectors = [];
        removeCustomItems();
    }

    function createAllVectors() {
        const manager = ActiveOperation.RecordingManager;
        const end = manager.IsPlayingBack ? manager.ReplayIndex + 1 : manager.DataSet.ResultsCount;
        removeVectors();
        for (let i = 0; i < end; ++i) {
            viewModel.getComputeVector3D(i);
            createVector3D();
        }
        if (!manager.IsRecording && manager.IsIdleWithData)
            setVectorsVisibleUntil();
    }

    function setVectorsVisibleUntil() {
        const manager = ActiveOperation.RecordingManager;
        const firstHidden = manager.IsPlayingBack || manager.IsIdleWithData ? manager.ReplayIndex + 1
                                                                            : manager.DataSet.ResultsCount;
        for (let i = 0; i < vectors.length; ++i)
            vectors[i].visible = i < firstHidden;
    }

    function setArrowLength(length) {
        arrowLength = length;
        for (let i = 0; i < vectors.length; ++i) {
            viewModel.getComputeVector3D(i);
            vectors[i].scaling = currentScaling();
        }
    }

    // The scene knows its items by their addresses. One that is made where one was let go of since the last frame would be
    // drawn like that one, were it not for the changes after it was added; and nothing is like what is not a number.
    property Component vectorComponent: Component {
        Custom3DItem {
            meshFile: ":/Resources/Mesh/ArrowMesh.obj"
            textureFile: ":/Resources/Mesh/RedTexture.png"
            scaling: Qt.vector3d(NaN, NaN, NaN)
            position: Qt.vector3d(NaN, NaN, NaN)
            rotation: Qt.quaternion(NaN, NaN, NaN, NaN)
            shadowCasting: false
            visible: false
        }
    }

    property Connections viewModelConnections: Connections {
        target: scene.viewModel

        function onNewVectorToPlot() {
            scene.createVector3D();
        }

        function onClear3DPlots() {
            scene.removeVectors();
        }

        function onReload3DPlots() {
            scene.createAllVectors();
        }

        function onSetVisibleUntilChart() {
            scene.setVectorsVisibleUntil();
        }
    }

    objectName: "vectorsScene"
    Accessible.role: Accessible.Graphic
    Accessible.name: qsTr("Vectors of the field")
    shadowQuality: AbstractGraph3D.ShadowQualitySoftLow
    // The floor as wide as leaves its front corner on screen at the camera of a new installation, and its short side
    // as long as the labels along it need.
    aspectRatio: 1.4
    horizontalAspectRatio: Math.min(Math.max((axisX.max - axisX.min) / (axisZ.max - axisZ.min), 0.5), 2)
    selectionMode: AbstractGraph3D.SelectionNone

    theme: Theme3D {
        type: Theme3D.ThemeQt
        windowColor: Style.BackgroundColor
        font.family: Style.LetterFontFamily
        labelTextColor: Style.TextDarkColor
        labelBackgroundEnabled: false
        labelBorderEnabled: false
    }

    axisX: ValueAxis3D {
        title: qsTr("X")
        titleVisible: true
        segmentCount: 10
    }

    axisY: ValueAxis3D {
        title: qsTr("Y")
        titleVisible: true
        segmentCount: 10
    }

    // The scene counts the positions along Z away from the viewer, the rotations of the items towards him.
    axisZ: ValueAxis3D {
        title: qsTr("Z")
        titleVisible: true
        segmentCount: 10
        reversed: true
    }

    onXRangeChanged: setRange(axisX, xRange[0], xRange[1])
    onYRangeChanged: setRange(axisY, yRange[0], yRange[1])
    onZRangeChanged: setRange(axisZ, zRange[0], zRange[1])
}
