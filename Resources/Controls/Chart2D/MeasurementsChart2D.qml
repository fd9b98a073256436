// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."
import "../../Utils/Style.js" as Style

// The plot of the seven field series over time or a position, with its tools, sliders and legend.
Item {
    id: chart2D

    property QtObject dataModel: null
    property int xAxisType: 0
    property string verticalAxisLabel: qsTr("Value")
    property string horizontalAxisLabel: [qsTr("Time [s]"), qsTr("X"), qsTr("Y"), qsTr("Z")][xAxisType]
    property alias bxLabel: chartView.bxLabel
    property alias byLabel: chartView.byLabel
    property alias bzLabel: chartView.bzLabel
    property int unit: 0
    property int lengthAxeX: 0
    property bool autoScale: true
    property bool hasToolbar: true
    property alias xMinTime: xMinTimeLabel.text
    property alias xMinDate: xMinDateLabel.text
    property alias xMaxTime: xMaxTimeLabel.text
    property alias xMaxDate: xMaxDateLabel.text
    property bool isTouchDevice: Utils.isTouchDevice()
    property bool completed: false
    readonly property bool bindingActived: dataModel !== null && completed
    property alias useOpenGL: chartView.useOpenGL

    readonly property bool autoScaling: bindingActived ? dataModel.AutoScaling : true
    readonly property real lowestX: bindingActived && xAxisType !== 0 ? dataModel.MeasureResultMinX : 0
    readonly property real highestX: bindingActived ? dataModel.MeasureResultMaxX : 1
    readonly property string images: "qrc:/Resources/Images/"

    function resetDisplay() {
        dataModel.Xmax = dataModel.MeasureResultMaxX === 0 ? 1 : dataModel.MeasureResultMaxX;
        dataModel.resetAxisXDelta(true);
        dataModel.resetAxisYDelta();
    }

    function shrunk(low, high, minAxisRange) {
        const quarter = (high - low) / 4;
        const ends = [low + quarter, high - quarter];
        if (ends[1] - ends[0] < minAxisRange)
            return [ends[0] - minAxisRange / 2, ends[1] + minAxisRange / 2];
        return ends;
    }

    function zoomIn() {
        const axisX = chartView.axisX;
        const axisY = chartView.axisY;
        const x = shrunk(axisX.min, axisX.max, axisX.minAxisRange);
        x[0] = Math.max(lowestX, x[0]);
        x[1] = Math.min(highestX, x[1]);
        const y = autoScaling ? [axisY.min, axisY.max] : shrunk(axisY.min, axisY.max, axisY.minAxisRange);
        const topLeft = chartView.mapToPosition(Qt.point(x[0], y[1]));
        const bottomRight = chartView.mapToPosition(Qt.point(x[1], y[0]));
        chartView.zoomIn(Qt.rect(topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y));
        dataModel.refreshLegendData(axisX.min, axisX.max);
        if (!autoScaling)
            dataModel.refreshYminYmax(axisY.min, axisY.max);
    }

    function zoomOut() {
        const axisX = chartView.axisX;
        const axisY = chartView.axisY;
        const wasAtLimitsX = axisX.min <= lowestX && axisX.max >= highestX;
        const wasAtLimitsY = axisY.min <= dataModel.YminAllSignal && axisY.max >= dataModel.YmaxAllSignal;
        const halfX = (axisX.max - axisX.min) / 2;
        const halfY = (axisY.max - axisY.min) / 2;
        const low = Math.max(dataModel.YminAllSignal, axisY.min - halfY);
        const high = Math.min(dataModel.YmaxAllSignal, axisY.max + halfY);
        dataModel.refreshLegendData(Math.max(lowestX, axisX.min - halfX), Math.min(highestX, axisX.max + halfX));
        if (!autoScaling)
            dataModel.refreshYminYmax(low, high);
        if (wasAtLimitsX)
            dataModel.resetAxisXDelta(true);
        if (wasAtLimitsY)
            dataModel.resetAxisYDelta();
    }

    function toggleAutoScaling() {
        dataModel.AutoScaling = !dataModel.AutoScaling;
        dataModel.resetAxisYDelta();
    }

    function moveX(firstMoved) {
        const span = Math.max(dataModel.MinDeltaAxisX, chartView.axisX.minAxisRange);
        let low = xSlider.first.value;
        let high = xSlider.second.value;
        if (high - low < span) {
            if (firstMoved)
                low = high - span;
            else
                high = low + span;
        }
        dataModel.refreshLegendData(low, high);
    }

    function moveY(firstMoved) {
        const span = chartView.axisY.minAxisRange;
        if (firstMoved)
            dataModel.refreshYmin(Math.min(ySlider.first.value, ySlider.second.value - span));
        else
            dataModel.refreshYmax(Math.max(ySlider.second.value, ySlider.first.value + span));
    }

    function resetXSlider() {
        if (!xSlider.first.pressed && !xSlider.second.pressed)
            xSlider.setValues(chartView.axisX.min, chartView.axisX.max);
    }

    function resetYSlider() {
        if (!ySlider.first.pressed && !ySlider.second.pressed)
            ySlider.setValues(chartView.axisY.min, chartView.axisY.max);
    }

    objectName: "measurementsChart2D"

    Component.onCompleted: {
        completed = true;
        chartView.createAllSeries();
        if (bindingActived)
            dataModel.refreshLegendData(dataModel.Xmin, dataModel.Xmax);
        resetXSlider();
        resetYSlider();
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        RowLayout {
            Layout.leftMargin: 70
            Layout.topMargin: 10
            Layout.rightMargin: 10
            visible: chart2D.hasToolbar
            enabled: chart2D.bindingActived
            spacing: 5
            z: 2

            AxisRangeSlider {
                id: xSlider

                objectName: "xRangeSlider"
                name: qsTr("Range of the horizontal axis")
                Layout.fillWidth: true
                Layout.preferredHeight: 20
                from: chart2D.lowestX
                to: chart2D.highestX
                first.onMoved: chart2D.moveX(true)
                second.onMoved: chart2D.moveX(false)
                onFromChanged: chart2D.resetXSlider()
                onToChanged: chart2D.resetXSlider()
            }

            GraphToolButton {
                objectName: "zoomInButton"
                label: qsTr("Zoom in")
                imageSource: chart2D.images + "ZoomIn.svg"
                onClicked: chart2D.zoomIn()
            }

            GraphToolButton {
                objectName: "zoomOutButton"
                label: qsTr("Zoom out")
                imageSource: chart2D.images + "ZoomOut.svg"
                onClicked: chart2D.zoomOut()
            }

            GraphToolButton {
                objectName: "zoomResetButton"
                label: qsTr("Reset zoom")
                imageSource: chart2D.images + "ZoomReset.svg"
                onClicked: chart2D.resetDisplay()
            }

            GraphToolButton {
                objectName: "autoScalingButton"
                label: chart2D.autoScaling ? qsTr("Disable auto scaling") : qsTr("Enable auto scaling")
                imageSource: chart2D.images + "AutoScaling.svg"
                visible: chart2D.autoScale
                checked: chart2D.autoScaling
                onClicked: chart2D.toggleAutoScaling()
            }

            GraphToolButton {
                objectName: "legendButton"
                label: qsTr("Legend")
                imageSource: chart2D.images + "ProbeList.svg"
                checked: legend.visible
                onClicked: legend.visible = !legend.visible
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 0

            AxisRangeSlider {
                id: ySlider

                objectName: "yRangeSlider"
                name: qsTr("Range of the vertical axis")
                Layout.fillHeight: true
                Layout.preferredWidth: 50
                Layout.topMargin: 15
                Layout.bottomMargin: 60
                orientation: Qt.Vertical
                visible: !chart2D.autoScaling
                from: chart2D.bindingActived && chart2D.dataModel.FirstDataInit
                      ? chartView.goodNumber("sliderFrom", chart2D.dataModel.YminAllSignal, 0) : 0
                to: chart2D.bindingActived && chart2D.dataModel.FirstDataInit
                    ? chartView.goodNumber("sliderTo", chart2D.dataModel.YmaxAllSignal, 10) : 10
                first.onMoved: chart2D.moveY(true)
                second.onMoved: chart2D.moveY(false)
                // The handles keep their places when a limit moves, unless a value is written.
                onFromChanged: {
                    const value = first.value;
                    first.value = 0;
                    first.value = value;
                }
                onToChanged: {
                    const value = second.value;
                    second.value = 0;
                    second.value = value;
                }
            }

            FieldChartView {
                id: chartView

                objectName: "chartView"
                Layout.fillWidth: true
                Layout.fillHeight: true
                dataModel: chart2D.dataModel
                bindingActived: chart2D.bindingActived
                xAxisType: chart2D.xAxisType
                verticalTitle: chart2D.verticalAxisLabel + " [" + Utils.getUnitText(chart2D.unit) + "]"
                margins.bottom: timeLegend.height + 10

                Connections {
                    target: chartView.axisX

                    function onRangeChanged(min, max) {
                        chart2D.resetXSlider();
                    }
                }

                Connections {
                    target: chartView.axisY

                    function onRangeChanged(min, max) {
                        chart2D.resetYSlider();
                    }
                }

                ChartMouseArea {
                    objectName: "chartMouseArea"
                    anchors.fill: parent
                    chart: chartView
                    dataModel: chart2D.bindingActived ? chart2D.dataModel : null
                    autoScaling: chart2D.autoScaling
                    onResetDisplay: chart2D.resetDisplay()
                }

                Item {
                    id: timeLegend

                    anchors.left: parent.left
                    anchors.leftMargin: chartView.plotArea.x
                    anchors.right: parent.right
                    anchors.rightMargin: chartView.width - chartView.plotArea.x - chartView.plotArea.width
                    anchors.bottom: parent.bottom
                    height: 40

                    Column {
                        anchors.left: parent.left

                        KXCLabel {
                            id: xMinTimeLabel

                            objectName: "xMinTimeLabel"
                        }

                        KXCLabel {
                            id: xMinDateLabel

                            objectName: "xMinDateLabel"
                        }
                    }

                    KXCLabel {
                        objectName: "horizontalAxisLabel"
                        anchors.horizontalCenter: parent.horizontalCenter
                        text: chart2D.horizontalAxisLabel
                    }

                    Column {
                        anchors.right: parent.right

                        KXCLabel {
                            id: xMaxTimeLabel

                            objectName: "xMaxTimeLabel"
                            anchors.right: parent.right
                        }

                        KXCLabel {
                            id: xMaxDateLabel

                            objectName: "xMaxDateLabel"
                            anchors.right: parent.right
                        }
                    }
                }
            }

            ChartLegend {
                id: legend

                objectName: "chartLegend"
                Layout.alignment: Qt.AlignTop
                Layout.fillHeight: true
                Layout.preferredWidth: 100
                enabled: chart2D.bindingActived
                chart: chartView
                dataModel: chart2D.dataModel
            }
        }
    }

    Connections {
        target: chart2D.bindingActived ? chart2D.dataModel : null

        function onRefreshLimitSliderX() {
            chart2D.resetXSlider();
            // A window that the model has moved has other times at its ends.
            chart2D.dataModel.refreshLegendData(chart2D.dataModel.Xmin, chart2D.dataModel.Xmax);
        }

        function onRefreshLimitSliderY() {
            chart2D.resetYSlider();
        }

        function onClearCharts() {
            chart2D.resetDisplay();
            chartView.createAllSeries();
            for (let i = 0; i < chartView.sprites.length; ++i)
                chart2D.dataModel.setComponantVisibility(i, true, i + 1 >= chartView.seriesCount);
            chart2D.resetXSlider();
        }
    }
}
