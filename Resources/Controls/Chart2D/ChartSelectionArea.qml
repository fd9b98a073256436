// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Draws a rectangle on a chart with the mouse, and tells of drags with a finger. Lies over the chart, with the chart's
// size. Whoever uses it says what a rectangle, a drag or the wheel does.
MouseArea {
    id: area

    property Item chart: null
    // Without it the rectangle is as high as the plot.
    property bool heightFromMouse: true
    readonly property rect plot: chart.plotArea
    property real lastX: 0
    property real lastY: 0
    property point pressedAt: Qt.point(0, 0)

    signal resetDisplay
    // A rectangle with an area was drawn.
    signal selected(rect selection)
    signal dragged(real dx, real dy)
    // Each release ends with this; the height is that of the rectangle, 0 without one.
    signal finished(real selectedHeight)

    function isRealMouse(mouse) {
        return mouse.source === Qt.MouseEventNotSynthesized;
    }

    function clampedToPlot(x, y) {
        return Qt.point(Math.max(plot.x, Math.min(plot.x + plot.width, x)),
                        Math.max(plot.y, Math.min(plot.y + plot.height, y)));
    }

    // The selector between the point of the press and here.
    function select(x, y) {
        const end = clampedToPlot(x, y);
        selector.x = Math.min(pressedAt.x, end.x);
        selector.width = Math.abs(end.x - pressedAt.x);
        selector.y = heightFromMouse ? Math.min(pressedAt.y, end.y) : plot.y;
        selector.height = heightFromMouse ? Math.abs(end.y - pressedAt.y) : plot.height;
    }

    acceptedButtons: Qt.LeftButton | Qt.RightButton
    Accessible.ignored: true

    onPressed: {
        MainViewModel.PageMenuExpanded = false;
        MainViewModel.ParameterMenuExpanded = false;
        lastX = mouse.x;
        lastY = mouse.y;
        if (mouse.button !== Qt.LeftButton || !isRealMouse(mouse))
            return;
        pressedAt = clampedToPlot(mouse.x, mouse.y);
        select(mouse.x, mouse.y);
        selector.visible = true;
    }
    onPositionChanged: {
        if (selector.visible)
            select(mouse.x, mouse.y);
        else if (pressed && !isRealMouse(mouse))
            dragged(mouse.x - lastX, mouse.y - lastY);
        lastX = mouse.x;
        lastY = mouse.y;
    }
    onReleased: {
        const selectedHeight = selector.visible ? selector.height : 0;
        if (selector.visible && selector.width > 0 && selector.height > 0)
            selected(Qt.rect(selector.x, selector.y, selector.width, selector.height));
        selector.visible = false;
        if (mouse.button === Qt.RightButton && isRealMouse(mouse))
            resetDisplay();
        finished(selectedHeight);
    }
    onCanceled: selector.visible = false
    onDoubleClicked: {
        if (!isRealMouse(mouse))
            resetDisplay();
    }

    Rectangle {
        id: selector

        objectName: "zoomSelector"
        color: "black"
        opacity: 0.2
        visible: false
    }
}
