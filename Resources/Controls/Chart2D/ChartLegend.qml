// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import ".."
import "../../Utils/Style.js" as Style

// Names the series of a FieldChartView, switches them, and shows one alone while the mouse is over its name.
Rectangle {
    id: legend

    property Item chart: null
    property QtObject dataModel: null
    readonly property var sprites: chart === null ? [] : chart.sprites
    property int hoveredRow: -1

    // Both bounds around B are one row.
    function belongsToRow(series, row) {
        return series === row || (row === 5 && series === 6);
    }

    function selectAll(state) {
        for (let i = 0; i < sprites.length; ++i) {
            sprites[i].masterVisible = state;
            sprites[i].series.visible = state;
            dataModel.setComponantVisibility(i, state, i + 1 >= sprites.length);
        }
    }

    function setMaster(index, state) {
        sprites[index].masterVisible = state;
        sprites[index].series.visible = state;
    }

    function toggle(row) {
        const state = !sprites[row].masterVisible;
        const companions = row === 0 ? [5, 6] : row === 5 ? [6] : [];
        for (const companion of companions) {
            setMaster(companion, state);
            dataModel.setComponantVisibility(companion, state, false);
        }
        setMaster(row, state);
        dataModel.setComponantVisibility(row, state);
        if (hoveredRow >= 0)
            hover(hoveredRow);
    }

    function hover(row) {
        hoveredRow = row;
        for (let i = 0; i < sprites.length; ++i) {
            const alone = row < 0 || belongsToRow(i, row);
            sprites[i].series.color = alone ? chart.seriesColor(i) : chart.fadedColor;
            sprites[i].series.visible = alone && sprites[i].masterVisible;
        }
    }

    onSpritesChanged: hoveredRow = -1
    implicitWidth: 100
    implicitHeight: rows.implicitHeight + 20
    color: Style.ComponentSelectorBackground

    ColumnLayout {
        id: rows

        anchors.fill: parent
        anchors.margins: 5
        spacing: 5

        TextButton {
            objectName: "legendSelectAllButton"
            text: qsTr("Select all")
            Layout.fillWidth: true
            Layout.preferredHeight: Style.TextButtonHeight
            onClicked: legend.selectAll(true)
        }

        TextButton {
            objectName: "legendSelectNoneButton"
            text: qsTr("Select none")
            Layout.fillWidth: true
            Layout.preferredHeight: Style.TextButtonHeight
            onClicked: legend.selectAll(false)
        }

        Repeater {
            model: Math.max(0, legend.sprites.length - 1)

            LegendRow {
                readonly property var sprite: legend.sprites[index]

                number: index
                Layout.fillWidth: true
                seriesName: sprite.series.name
                seriesColor: legend.chart.seriesColor(index)
                shown: sprite.series.visible
                checked: sprite.masterVisible
                bold: legend.hoveredRow === index
                onToggled: legend.toggle(index)
                onEntered: legend.hover(index)
                onExited: legend.hover(-1)
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
