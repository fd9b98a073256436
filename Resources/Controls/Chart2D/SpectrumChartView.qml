// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtCharts 2.3
import Kestrix.Charts 1.0
import "../../Utils/Style.js" as Style
import "AxisFormats.js" as AxisFormats

// The spectrum itself: axes bound to the model, the spectrum's line and the staircase of the exposure limits.
ChartView {
    id: chartView

    property QtObject dataModel: null
    property bool bindingActived: false
    property string horizontalTitle: ""
    property string verticalTitle: ""
    property int xTickCount: 10
    // Without OpenGL the line is drawn on the processor, which machines and tests without it need.
    property bool useOpenGL: true

    property alias axisX: horizontalAxis
    property alias axisY: verticalAxis
    // A property of its own tells changes only: at each change the mapper reads the table anew.
    readonly property int rowCount: bindingActived ? Math.max(0, dataModel.DownsampledSignalLength) : 0
    property var shownSeries: []
    property QtObject sprite: null

    // The last range that the log axis could show, which has nothing at or below zero.
    readonly property var lastGood: ({
            "min": 0.01,
            "max": 10
        })

    function goodYRange(min, max) {
        if (min > 0 && max > min && isFinite(max)) {
            lastGood.min = min;
            lastGood.max = max;
        }
        return lastGood;
    }

    function limitPoints() {
        const points = [];
        let last = 0;
        let exposure = 0;
        const count = ActiveOperation.getLimitsCount();
        for (let i = 0; i < count; ++i) {
            const frequency = ActiveOperation.getFrequency(i);
            exposure = ActiveOperation.getExposure(i);
            if (exposure > 0) {
                points.push(Qt.point(last, exposure));
                points.push(Qt.point(frequency, exposure));
            }
            last = frequency;
        }
        const highest = ActiveOperation.getMaxFrequency();
        if (highest >= 0 && exposure > 0)
            points.push(Qt.point(highest, exposure));
        return points;
    }

    function createAllSeries(seriesName) {
        // The legend lets go of the series first.
        shownSeries = [];
        if (sprite !== null)
            sprite.destroy();
        sprite = null;
        chartView.removeAllSeries();

        const line = createSeries(ChartView.SeriesTypeLine, seriesName, horizontalAxis, verticalAxis);
        line.useOpenGL = useOpenGL;
        line.pointsVisible = true;
        line.color = Qt.hsva(0, 1, 0.9, 1);
        sprite = spriteComponent.createObject(chartView, {
            "series": line
        });
        const limits = createSeries(ChartView.SeriesTypeLine, qsTr("Limits"), horizontalAxis, verticalAxis);
        limits.color = Qt.hsva(1 / 3, 1, 0.9, 1);
        limits.style = Qt.DashLine;
        for (const point of limitPoints())
            limits.append(point.x, point.y);
        shownSeries = [line, limits];
        showPoints();
    }

    function showPoints() {
        if (sprite !== null)
            sprite.show();
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

        min: chartView.bindingActived ? chartView.dataModel.Xmin : 0
        max: chartView.bindingActived ? chartView.dataModel.Xmax : 1
        tickType: ValueAxis.TicksDynamic
        tickAnchor: 0
        tickInterval: max > min ? (max - min) / 5.0 : 1
        tickCount: chartView.xTickCount
        labelFormat: AxisFormats.spectrum(Math.abs(max - min))
        labelsFont.family: Style.LetterFontFamily
        labelsFont.pointSize: 10
        titleText: chartView.horizontalTitle
        titleFont.family: Style.LetterFontFamily
        titleFont.pointSize: 10
    }

    LogValueAxis {
        id: verticalAxis

        base: 10.0
        min: chartView.bindingActived ? chartView.goodYRange(chartView.dataModel.Ymin, chartView.dataModel.Ymax).min : 0.01
        max: chartView.bindingActived ? chartView.goodYRange(chartView.dataModel.Ymin, chartView.dataModel.Ymax).max : 10
        labelFormat: "%.2E"
        minorTickCount: 8
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
            positiveOnly: true
        }
    }

    Connections {
        target: table

        function onModelReset() {
            Qt.callLater(chartView.showPoints);
        }
    }
}
