// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Zoom by rectangle and scrolling on a SpectrumChartView. The model's window has ends on whole hertz.
ChartSelectionArea {
    id: area

    property QtObject dataModel: null

    function zoomTo(selection) {
        const topLeft = chart.mapToValue(Qt.point(selection.x, selection.y));
        const bottomRight = chart.mapToValue(Qt.point(selection.x + selection.width, selection.y + selection.height));
        const left = chart.mapToPosition(Qt.point(Math.floor(topLeft.x), topLeft.y)).x;
        const right = chart.mapToPosition(Qt.point(Math.ceil(bottomRight.x), topLeft.y)).x;
        chart.zoomIn(Qt.rect(left, selection.y, right - left, selection.height));
        // The ends come back from pixels, so they miss the whole numbers by a little.
        dataModel.refreshAxisX(Math.floor(topLeft.x), Math.ceil(bottomRight.x));
    }

    // Moves the window by pixels, as far as there are frequencies; its width stays.
    function scroll(dx) {
        const axis = chart.axisX;
        const width = Math.max(1, Math.round(axis.max - axis.min));
        if (dx > 0 && axis.max < dataModel.MaxFrequency)
            chart.scrollRight(dx);
        else if (dx < 0 && axis.min > dataModel.MinFrequency)
            chart.scrollLeft(-dx);
        else
            return;
        const highest = Math.ceil(dataModel.MaxFrequency) - width;
        const low = Math.max(Math.floor(dataModel.MinFrequency), Math.min(highest, Math.round(axis.min)));
        dataModel.refreshAxisX(low, low + width);
    }

    enabled: dataModel !== null
    onSelected: zoomTo(selection)
    onDragged: scroll(-dx)
    onFinished: dataModel.refreshAxisX(Math.floor(chart.axisX.min), Math.ceil(chart.axisX.max))
    onWheel: scroll(wheel.angleDelta.y)
}
