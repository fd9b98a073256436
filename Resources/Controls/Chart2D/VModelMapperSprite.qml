// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtCharts 2.3
import Kestrix.Charts 1.0

// One column of a chart model on its way to a series of a chart. The mapper fills a series that is in no chart: in
// one it would make the chart lay itself out at every point.
QtObject {
    id: sprite

    property QtObject plotTable: null
    property XYSeries series: null
    property int yColumn: 1
    property int rowCount: 0
    // What the user chose, as opposed to the series' own `visible`, which hovering over the legend changes.
    property bool masterVisible: true
    property bool completed: false

    readonly property XYSeries buffer: PointBuffer {
    }
    readonly property VXYModelMapper mapper: VXYModelMapper {
        series: sprite.buffer
        // A mapper warns of a model with rows as long as it does not know its column.
        model: sprite.completed ? sprite.plotTable : null
        firstRow: 0
        // A mapper of no rows warns when the model has some, which is what it sees first when data come.
        rowCount: Math.max(1, sprite.rowCount)
        xColumn: 0
        yColumn: sprite.yColumn
    }

    function show() {
        if (plotTable !== null && series !== null)
            plotTable.handOver(buffer, series, yColumn);
    }

    Component.onCompleted: completed = true
}
