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

            Item {
                id: row

                readonly property var sprite: legend.sprites[index]
                readonly property color ownColor: legend.chart.seriesColor(index)

                objectName: "legendRow" + index
                Layout.fillWidth: true
                Layout.preferredHeight: 22
                activeFocusOnTab: true
                Accessible.role: Accessible.CheckBox
                Accessible.name: name.text
                Accessible.checkable: true
                Accessible.checked: sprite.masterVisible
                Accessible.onToggleAction: legend.toggle(index)
                Keys.onSpacePressed: legend.toggle(index)

                Rectangle {
                    id: swatch

                    objectName: "legendSwatch" + index
                    anchors.verticalCenter: parent.verticalCenter
                    width: 15
                    height: 15
                    radius: 2
                    color: row.sprite.series.visible ? row.ownColor : "transparent"
                    border.color: row.ownColor
                    border.width: row.activeFocus ? 2 : 1
                }

                KXCLabel {
                    id: name

                    anchors.verticalCenter: parent.verticalCenter
                    anchors.left: swatch.right
                    anchors.leftMargin: 5
                    anchors.right: parent.right
                    text: row.sprite.series.name
                    textColor: row.ownColor
                    bold: legend.hoveredRow === index
                    wrapMode: Text.NoWrap
                }

                MouseArea {
                    anchors.fill: parent
                    hoverEnabled: true
                    cursorShape: Qt.PointingHandCursor
                    onPressed: {
                        if (mouse.source !== Qt.MouseEventNotSynthesized)
                            hoverEnabled = false;
                        legend.toggle(index);
                    }
                    onEntered: {
                        if (hoverEnabled)
                            legend.hover(index);
                    }
                    onExited: legend.hover(-1)
                }
            }
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
