// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtDataVisualization 1.2

// The least scene with one arrow that turns, of the size that the meter's has in the window of the benchmark.
Item {
    property real angle: 0

    Scatter3D {
        objectName: "bareScene"
        width: SceneWidth
        height: SceneHeight
        shadowQuality: AbstractGraph3D.ShadowQualityNone
        selectionMode: AbstractGraph3D.SelectionNone
        customItemList: [
            Custom3DItem {
                meshFile: ":/Resources/Mesh/ArrowMesh.obj"
                textureFile: ":/Resources/Mesh/RedTexture.png"
                scaling: Qt.vector3d(0.7, 0.7, 0.7)
                shadowCasting: false
                rotation: Qt.quaternion(Math.cos(angle / 2), 0, 0, Math.sin(angle / 2))
            }
        ]
    }
}
