// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Zoom by rectangle and scrolling on a FieldChartView. Lies over the chart, with the chart's size.
MouseArea {
    id: area

    property Item chart: null
    property QtObject dataModel: null
    property bool autoScaling: true
    readonly property rect plot: chart.plotArea
    property real lastX: 0
    property real lastY: 0
    property point pressedAt: Qt.point(0, 0)

    signal resetDisplay

    function isRealMouse(mouse) {
        return mouse.source === Qt.MouseEventNotSynthesized;
    }

    function clampedToPlot(x, y) {
        return Qt.point(Math.max(plot.x, Math.min(plot.x + plot.width, x)),
                        Math.max(plot.y, Math.min(plot.y + plot.height, y)));
    }

    // The selector between the point of the press and here; auto scaling leaves the height to the plot.
    function select(x, y) {
        const end = clampedToPlot(x, y);
        selector.x = Math.min(pressedAt.x, end.x);
        selector.width = Math.abs(end.x - pressedAt.x);
        selector.y = autoScaling ? plot.y : Math.min(pressedAt.y, end.y);
        selector.height = autoScaling ? plot.height : Math.abs(end.y - pressedAt.y);
    }

    function roundedEnds(low, high, axis) {
        if (high - low < axis.minAxisRange) {
            const middle = (low + high) / 2;
            low = middle - axis.minAxisRange / 2;
            high = middle + axis.minAxisRange / 2;
        }
        const p = axis.precisionIntValue;
        return [Math.round(low * p) / p, Math.round(high * p) / p];
    }

    function zoomToSelector() {
        const topLeft = chart.mapToValue(Qt.point(selector.x, selector.y));
        const bottomRight = chart.mapToValue(Qt.point(selector.x + selector.width, selector.y + selector.height));
        const xEnds = roundedEnds(topLeft.x, bottomRight.x, chart.axisX);
        let top = selector.y;
        let bottom = selector.y + selector.height;
        if (!autoScaling) {
            const yEnds = roundedEnds(bottomRight.y, topLeft.y, chart.axisY);
            top = chart.mapToPosition(Qt.point(xEnds[0], yEnds[1])).y;
            bottom = chart.mapToPosition(Qt.point(xEnds[0], yEnds[0])).y;
        }
        const left = chart.mapToPosition(Qt.point(xEnds[0], topLeft.y)).x;
        const right = chart.mapToPosition(Qt.point(xEnds[1], topLeft.y)).x;
        chart.zoomIn(Qt.rect(left, top, right - left, bottom - top));
    }

    function tellModel() {
        dataModel.refreshLegendData(chart.axisX.min, chart.axisX.max);
    }

    // Moves the window with the finger, as far as there are results.
    function drag(dx, dy) {
        if (dx < 0 && chart.axisX.max < dataModel.MeasureResultMaxX)
            chart.scrollRight(-dx);
        else if (dx > 0 && chart.axisX.min > dataModel.MeasureResultMinX)
            chart.scrollLeft(dx);
        if (!autoScaling) {
            if (dy < 0 && chart.axisY.min > dataModel.YminAllSignal)
                chart.scrollDown(-dy);
            else if (dy > 0 && chart.axisY.max < dataModel.YmaxAllSignal)
                chart.scrollUp(dy);
        }
        tellModel();
    }

    enabled: dataModel !== null
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
            drag(mouse.x - lastX, mouse.y - lastY);
        lastX = mouse.x;
        lastY = mouse.y;
    }
    onReleased: {
        const selectedHeight = selector.visible ? selector.height : 0;
        if (selector.visible && selector.width > 0 && selector.height > 0)
            zoomToSelector();
        selector.visible = false;
        if (mouse.button === Qt.RightButton && isRealMouse(mouse))
            resetDisplay();
        tellModel();
        if (!autoScaling && selectedHeight > 0)
            dataModel.refreshYminYmax(chart.axisY.min, chart.axisY.max);
    }
    onCanceled: selector.visible = false
    onDoubleClicked: {
        if (!isRealMouse(mouse))
            resetDisplay();
    }
    onWheel: {
        if (wheel.angleDelta.y > 0 && chart.axisX.max < dataModel.MeasureResultMaxX)
            chart.scrollRight(wheel.angleDelta.y);
        else if (wheel.angleDelta.y < 0 && chart.axisX.min > dataModel.MeasureResultMinX)
            chart.scrollLeft(-wheel.angleDelta.y);
        tellModel();
    }

    Rectangle {
        id: selector

        objectName: "zoomSelector"
        color: "black"
        opacity: 0.2
        visible: false
    }
}
