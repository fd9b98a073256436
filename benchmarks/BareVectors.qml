// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtDataVisualization 1.2

// The least scene with so many arrows, which never change, of the size that the mapping's has in the window of the
// benchmark.
Item {
    id: root

    property real angle: 0

    Component {
        id: arrow

        Custom3DItem {
            meshFile: ":/Resources/Mesh/ArrowMesh.obj"
            textureFile: ":/Resources/Mesh/RedTexture.png"
            scaling: Qt.vector3d(0.1, 0.1, 0.1)
            shadowCasting: false
        }
    }

    Scatter3D {
        id: scene

        objectName: "bareScene"
        width: SceneWidth
        height: SceneHeight
        shadowQuality: AbstractGraph3D.ShadowQualitySoftLow
        selectionMode: AbstractGraph3D.SelectionNone
        scene.activeCamera.xRotation: root.angle
        axisX: ValueAxis3D {
            max: 99
            segmentCount: 10
        }
        axisY: ValueAxis3D {
            max: 99
            segmentCount: 10
        }
        axisZ: ValueAxis3D {
            max: 1
            segmentCount: 10
        }
        Component.onCompleted: {
            for (let i = 0; i < ArrowCount; ++i)
                addCustomItem(arrow.createObject(scene, {
                    "position": Qt.vector3d(i % 100, Math.floor(i / 100), 0.5)
                }));
        }
    }
}
