// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Zoom by rectangle and scrolling on a FieldChartView.
ChartSelectionArea {
    id: area

    property QtObject dataModel: null
    property bool autoScaling: true

    function roundedEnds(low, high, axis) {
        if (high - low < axis.minAxisRange) {
            const middle = (low + high) / 2;
            low = middle - axis.minAxisRange / 2;
            high = middle + axis.minAxisRange / 2;
        }
        const p = axis.precisionIntValue;
        return [Math.round(low * p) / p, Math.round(high * p) / p];
    }

    function zoomTo(selection) {
        const topLeft = chart.mapToValue(Qt.point(selection.x, selection.y));
        const bottomRight = chart.mapToValue(Qt.point(selection.x + selection.width, selection.y + selection.height));
        const xEnds = roundedEnds(topLeft.x, bottomRight.x, chart.axisX);
        let top = selection.y;
        let bottom = selection.y + selection.height;
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
    // Auto scaling leaves the height to the plot.
    heightFromMouse: !autoScaling
    onSelected: zoomTo(selection)
    onDragged: drag(dx, dy)
    onFinished: {
        tellModel();
        if (!autoScaling && selectedHeight > 0)
            dataModel.refreshYminYmax(chart.axisY.min, chart.axisY.max);
    }
    onWheel: {
        if (wheel.angleDelta.y > 0 && chart.axisX.max < dataModel.MeasureResultMaxX)
            chart.scrollRight(wheel.angleDelta.y);
        else if (wheel.angleDelta.y < 0 && chart.axisX.min > dataModel.MeasureResultMinX)
            chart.scrollLeft(-wheel.angleDelta.y);
        tellModel();
    }
}
