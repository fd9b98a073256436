// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import ".."

// The plot of a spectrum and of the exposure limits on a log axis, with its tools, slider and legend.
Item {
    id: chart2D

    property QtObject dataModel: null
    property string verticalAxisLabel: qsTr("Value")
    property string horizontalAxisLabel: qsTr("Index")
    property int unit: 0
    property alias axeXTickCount: chartView.xTickCount
    property bool autoScale: true
    property bool hasToolbar: true
    property int currentField: -1
    property bool limitFileLoaded: false
    property bool limitFileConverted: false
    property bool isTouchDevice: Utils.isTouchDevice()
    property bool completed: false
    readonly property bool bindingActived: dataModel !== null && completed
    property alias useOpenGL: chartView.useOpenGL

    readonly property real lowestX: bindingActived ? dataModel.MinFrequency : 0
    readonly property real highestX: bindingActived ? dataModel.MaxFrequency : 10
    readonly property var fieldNames: [qsTr("B"), qsTr("B·B'"), qsTr("Bx"), qsTr("By"), qsTr("Bz")]
    readonly property string images: "qrc:/Resources/Images/"

    function createAllSeries() {
        if (completed)
            chartView.createAllSeries(fieldNames[currentField] || "");
    }

    function resetDisplay() {
        chartView.zoomReset();
        dataModel.refreshAxisX(dataModel.MinFrequency, dataModel.MaxFrequency);
    }

    // Widens the ends to whole hertz, as far as there are frequencies. The chart follows at once, the model decides.
    function showRange(low, high) {
        const left = Math.max(lowestX, Math.floor(low));
        const right = Math.min(highestX, Math.ceil(high));
        const axisY = chartView.axisY;
        const topLeft = chartView.mapToPosition(Qt.point(left, axisY.max));
        const bottomRight = chartView.mapToPosition(Qt.point(right, axisY.min));
        chartView.zoomIn(Qt.rect(topLeft.x, topLeft.y, bottomRight.x - topLeft.x, bottomRight.y - topLeft.y));
        dataModel.refreshAxisX(Math.floor(left), Math.ceil(right));
    }

    function zoomIn() {
        const quarter = (chartView.axisX.max - chartView.axisX.min) / 4;
        showRange(chartView.axisX.min + quarter, chartView.axisX.max - quarter);
    }

    function zoomOut() {
        const half = (chartView.axisX.max - chartView.axisX.min) / 2;
        dataModel.refreshAxisX(Math.max(Math.floor(lowestX), Math.floor(chartView.axisX.min - half)),
                               Math.min(Math.ceil(highestX), Math.ceil(chartView.axisX.max + half)));
    }

    function moveX(firstMoved) {
        let low = xSlider.first.value;
        let high = xSlider.second.value;
        if (high - low < 1) {
            if (firstMoved)
                low = high - 1;
            else
                high = low + 1;
        }
        dataModel.refreshAxisX(low, high);
    }

    function resetXSlider() {
        if (!xSlider.first.pressed && !xSlider.second.pressed)
            xSlider.setValues(chartView.axisX.min, chartView.axisX.max);
    }

    objectName: "spectrumChart2D"
    onCurrentFieldChanged: createAllSeries()
    onLimitFileLoadedChanged: createAllSeries()
    onLimitFileConvertedChanged: {
        if (limitFileConverted)
            createAllSeries();
    }

    Component.onCompleted: {
        completed = true;
        createAllSeries();
        resetXSlider();
        ActivePageViewModel.loadData();
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

            SpectrumChartView {
                id: chartView

                objectName: "chartView"
                Layout.fillWidth: true
                Layout.fillHeight: true
                dataModel: chart2D.dataModel
                bindingActived: chart2D.bindingActived
                horizontalTitle: chart2D.horizontalAxisLabel
                verticalTitle: chart2D.verticalAxisLabel + " [" + Utils.getUnitText(chart2D.unit) + "]"

                Connections {
                    target: chartView.axisX

                    function onRangeChanged(min, max) {
                        chart2D.resetXSlider();
                    }
                }

                SpectrumMouseArea {
                    objectName: "chartMouseArea"
                    anchors.fill: parent
                    chart: chartView
                    dataModel: chart2D.bindingActived ? chart2D.dataModel : null
                    onResetDisplay: chart2D.resetDisplay()
                }
            }

            SpectrumLegend {
                id: legend

                objectName: "chartLegend"
                Layout.alignment: Qt.AlignTop
                Layout.fillHeight: true
                Layout.preferredWidth: 100
                chart: chartView
            }
        }
    }
}
