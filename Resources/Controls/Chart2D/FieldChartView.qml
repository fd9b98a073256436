// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtCharts 2.3
import Kestrix.Charts 1.0
import "../../Utils/Style.js" as Style
import "AxisFormats.js" as AxisFormats

// The plot itself: axes bound to the model, seven series and the line at zero.
ChartView {
    id: chartView

    property QtObject dataModel: null
    property bool bindingActived: false
    property int xAxisType: 0
    property string verticalTitle: ""
    property string bxLabel: "Bx"
    property string byLabel: "By"
    property string bzLabel: "Bz"
    // Without OpenGL series are drawn on the processor, which machines and tests without it need.
    property bool useOpenGL: true

    property alias axisX: horizontalAxis
    property alias axisY: verticalAxis
    readonly property int seriesCount: sprites.length
    readonly property int intensityFieldCount: bindingActived ? dataModel.IntensityFieldCount : 7
    // A property of its own tells changes only: at each change the mappers read the table anew.
    readonly property int rowCount: bindingActived ? Math.max(0, dataModel.DownsampledSignalLength) : 0
    property var sprites: []
    property XYSeries yZeroSeries: null
    readonly property color fadedColor: Qt.hsla(0, 0, 0.8, 1)
    // The last numbers that the axes could use, by name; what is not a number leaves an axis as it is.
    readonly property var lastGood: ({})

    function goodNumber(name, value, fallback) {
        if (isFinite(value))
            lastGood[name] = value;
        return lastGood[name] === undefined ? fallback : lastGood[name];
    }

    // The bounds around B share its colour.
    function seriesColor(index) {
        const shown = index > 4 ? 0 : index;
        return Qt.hsva(shown * (360 / (intensityFieldCount - 1)) / 360, 1, 0.9, 1);
    }

    function createAllSeries() {
        // The legend lets go of the series first.
        const former = sprites;
        sprites = [];
        yZeroSeries = null;
        for (const sprite of former)
            sprite.destroy();
        chartView.removeAllSeries();
        const names = [qsTr("B"), qsTr("B·B'"), bxLabel, byLabel, bzLabel, qsTr("B ± ε(B)"), qsTr("B + ε(B)")];
        const created = [];
        for (let i = 0; i < names.length; ++i) {
            const isLine = i < 5 && xAxisType === 0;
            const series = createSeries(isLine ? ChartView.SeriesTypeLine : ChartView.SeriesTypeScatter, names[i],
                                        horizontalAxis, verticalAxis);
            series.useOpenGL = useOpenGL;
            series.pointsVisible = false;
            series.color = seriesColor(i);
            if (!isLine) {
                series.markerSize = i < 5 ? 5 : 3;
                // Drawn through OpenGL a marker is a plain dot. Without it, a circle of this size costs a path each.
                series.markerShape = ScatterSeries.MarkerShapeRectangle;
                series.borderWidth = 0;
                series.borderColor = "transparent";
            }
            created.push(spriteComponent.createObject(chartView, {
                "series": series,
                "yColumn": 1 + i
            }));
        }
        yZeroSeries = createSeries(ChartView.SeriesTypeLine, "Yzero", horizontalAxis, verticalAxis);
        yZeroSeries.color = "black";
        yZeroSeries.width = 1;
        yZeroSeries.style = Qt.DashLine;
        yZeroSeries.append(horizontalAxis.min, 0);
        yZeroSeries.append(horizontalAxis.max, 0);
        sprites = created;
        showPoints();
    }

    function showPoints() {
        for (const sprite of sprites)
            sprite.show();
    }

    // Keeps the line at zero as long as the axis is.
    function updateYzeroAxisSerie() {
        if (yZeroSeries === null || yZeroSeries.count !== 2)
            return;
        if (horizontalAxis.min < yZeroSeries.at(0).x) {
            yZeroSeries.insert(0, horizontalAxis.min, 0);
            yZeroSeries.remove(1);
        }
        if (horizontalAxis.max > yZeroSeries.at(1).x) {
            yZeroSeries.append(horizontalAxis.max, 0);
            yZeroSeries.remove(1);
        }
    }

    visible: bindingActived ? dataModel.Visible : true
    animationOptions: ChartView.NoAnimation
    antialiasing: true
    backgroundColor: "transparent"
    legend.visible: false
    localizeNumbers: true
    margins.left: 0
    margins.right: 10
    margins.top: 10
    onRowCountChanged: Qt.callLater(showPoints)

    ValueAxis {
        id: horizontalAxis

        readonly property var numbers: AxisFormats.horizontal(Math.abs(max - min))
        readonly property real precisionIntValue: numbers.precisionIntValue
        readonly property real minAxisRange: numbers.minAxisRange

        min: chartView.bindingActived ? chartView.goodNumber("xMin", chartView.dataModel.Xmin, 0) : 0
        max: chartView.bindingActived ? chartView.goodNumber("xMax", chartView.dataModel.Xmax, 1) : 1
        labelFormat: numbers.labelFormat
        labelsFont.family: Style.LetterFontFamily
        labelsFont.pointSize: 10
        onMinChanged: chartView.updateYzeroAxisSerie()
        onMaxChanged: chartView.updateYzeroAxisSerie()
    }

    ValueAxis {
        id: verticalAxis

        readonly property var numbers: AxisFormats.vertical(Math.abs(max - min),
                                                            Math.max(Math.abs(max), Math.abs(min)))
        readonly property real precisionIntValue: numbers.precisionIntValue
        readonly property real minAxisRange: numbers.minAxisRange

        min: chartView.bindingActived ? chartView.goodNumber("yMin", chartView.dataModel.Ymin, 0) : 0
        max: chartView.bindingActived ? chartView.goodNumber("yMax", chartView.dataModel.Ymax, 1) : 1
        tickCount: chartView.bindingActived ? Math.max(2, chartView.dataModel.YTickCount) : 2
        labelFormat: numbers.labelFormat
        labelsFont.family: Style.LetterFontFamily
        labelsFont.pointSize: 10
        titleText: chartView.verticalTitle
        titleFont.family: Style.LetterFontFamily
        titleFont.pointSize: 10
    }

    PlotTable {
        id: table

        sourceModel: chartView.dataModel
    }

    Component {
        id: spriteComponent

        VModelMapperSprite {
            plotTable: table
            rowCount: chartView.rowCount
        }
    }

    Connections {
        target: table

        function onModelReset() {
            Qt.callLater(chartView.showPoints);
        }
    }
}
