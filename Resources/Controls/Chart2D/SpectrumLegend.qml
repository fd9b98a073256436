// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Utils/Style.js" as Style

// Names the series of a SpectrumChartView, switches them, and fades the others while the mouse is over a name.
Rectangle {
    id: legend

    property Item chart: null
    readonly property var shownSeries: chart === null ? [] : chart.shownSeries
    property int hoveredRow: -1

    function hover(row) {
        hoveredRow = row;
        for (let i = 0; i < shownSeries.length; ++i) {
            // Works for series without OpenGL only.
            shownSeries[i].opacity = row < 0 || row === i ? 1 : 0.1;
            shownSeries[i].pointLabelsVisible = row === i;
        }
    }

    onShownSeriesChanged: hoveredRow = -1
    implicitWidth: 100
    implicitHeight: rows.implicitHeight + 20
    color: Style.ComponentSelectorBackground

    ColumnLayout {
        id: rows

        anchors.fill: parent
        anchors.margins: 5
        spacing: 5

        Repeater {
            model: legend.shownSeries.length

            LegendRow {
                readonly property var series: legend.shownSeries[index]

                number: index
                Layout.fillWidth: true
                seriesName: series.name
                seriesColor: series.color
                shown: series.visible
                checked: series.visible
                bold: legend.hoveredRow === index
                onToggled: series.visible = !series.visible
                onEntered: legend.hover(index)
                onExited: legend.hover(-1)
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
