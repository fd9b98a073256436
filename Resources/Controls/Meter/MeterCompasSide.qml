// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Shapes 1.15
import "../../Utils/Style.js" as Style

// One half of the gauge of the probe axis.
Rectangle {
    id: side

    property bool isShown: false

    // Takes a start point and the corners that follow it.
    function draw(start, corners) {
        const former = [];
        for (let i = 0; i < path.pathElements.length; ++i)
            former.push(path.pathElements[i]);
        const lines = corners.map(corner => Qt.createQmlObject(`import QtQuick 2.15; PathLine { x: ${corner.x}; y: ${corner.y} }`,
                                                               path, "compasLine"));
        path.startX = start.x;
        path.startY = start.y;
        path.pathElements = lines;
        for (const line of former)
            line.destroy();
    }

    color: Style.BackgroundColor
    clip: true

    Shape {
        anchors.fill: parent
        visible: side.isShown
        // The outline's steps are seen without.
        layer.enabled: GraphicsInfo.api === GraphicsInfo.OpenGL
        layer.samples: 4

        ShapePath {
            id: path

            strokeWidth: 3
            strokeStyle: ShapePath.SolidLine
            strokeColor: Style.TextDarkColor
            fillColor: Style.TextDarkColor
        }
    }
}
