// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls 2.15 as Controls2
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import Kestrix.Charts 1.0
import ".."
import "../../Utils/Style.js" as Style

// The results of the measure blocks, one row each.
ColumnLayout {
    id: measurementsTable

    property alias model: steadyTable.source
    property int unit: Unit.UNKNOWN
    property int uncertaintyUnit: Unit.UNKNOWN
    property int timpestampColumnMinWidth: 180
    property int columnMinPosWidth: 55
    property int columnMinWidth: 60
    property bool isCommentVisible: false
    property bool isPositionVisible: false
    property string comment: ""
    property string bxLabel: "Bx"
    property string byLabel: "By"
    property string bzLabel: "Bz"

    function withUnit(title, titleUnit) {
        return title + " [" + Utils.getUnitText(titleUnit) + "]";
    }

    function columnMinimum(column) {
        if (column === timestampColumn)
            return timpestampColumnMinWidth;
        return column.isPosition ? columnMinPosWidth : columnMinWidth;
    }

    // Shares what the minima leave of the width equally among the active columns.
    function resizeAllColumns() {
        const active = [];
        let sum = Style.ParametersScrollBarWidth;
        for (let i = 0; i < table.columnCount; ++i) {
            const column = table.getColumn(i);
            if (column.visible) {
                active.push(column);
                sum += columnMinimum(column);
            }
        }
        const share = Math.max(0, Math.floor((table.width - sum) / active.length));
        for (let j = 0; j < active.length; ++j)
            active[j].width = columnMinimum(active[j]) + share;
    }

    spacing: 5

    SteadyTable {
        id: steadyTable

        active: measurementsTable.visible
    }

    // The row count of a TableView lags behind its model: one turn is not enough.
    Timer {
        id: resizeTimer

        property int turns: 0

        // Not from the front: rows may come faster than that.
        function begin() {
            turns = 0;
            start();
        }

        interval: 100
        repeat: true
        onTriggered: {
            measurementsTable.resizeAllColumns();
            turns += 1;
            if (turns >= 3)
                stop();
        }
    }

    KXCLabel {
        Layout.leftMargin: 10
        visible: !ActiveOperation.RecordingManager.IsOperationMeasure
        text: qsTr("Last measurement of each block")
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        Layout.rightMargin: 10
        visible: measurementsTable.isCommentVisible
        spacing: 10

        KXCLabel {
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: 6
            text: qsTr("Comment:")
        }

        Controls2.TextField {
            objectName: "blockComment"
            Layout.fillWidth: true
            Layout.preferredHeight: 30
            readOnly: true
            selectByMouse: true
            text: measurementsTable.comment
            color: Style.TextDarkColor
            font.family: Style.LetterFontFamily
            font.pointSize: 10
            Accessible.name: qsTr("Comment:")

            background: Rectangle {
                color: Style.BackgroundColor
                border.width: parent.activeFocus ? 2 : 1
                border.color: parent.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
            }
        }
    }

    Component {
        id: textDelegate

        TableCell {
            TableTextCell {
                anchors.fill: parent
                letterLabel: false
                text: styleData.value === undefined ? "" : styleData.value
            }
        }
    }

    Component {
        id: fieldDelegate

        MeasurementsTableValueCell {
        }
    }

    Component {
        id: positionDelegate

        MeasurementsTableValueCell {
            significantNb: 4
        }
    }

    Component {
        id: orientationDelegate

        MeasurementsTableValueCell {
            precision: 2
            useCustomParserSignificatifNumber: false
        }
    }

    Table {
        id: table

        objectName: "resultsTable"
        model: steadyTable
        Layout.fillWidth: true
        Layout.fillHeight: true
        Accessible.name: qsTr("Results")
        onWidthChanged: resizeTimer.begin()
        onRowCountChanged: resizeTimer.begin()

        MeasurementsTableColumn {
            id: timestampColumn

            role: "Timestamp"
            title: qsTr("Timestamp")
            delegate: textDelegate
            width: measurementsTable.timpestampColumnMinWidth
        }

        MeasurementsTableColumn {
            role: "X"
            title: qsTr("X")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: positionDelegate
        }

        MeasurementsTableColumn {
            role: "Y"
            title: qsTr("Y")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: positionDelegate
        }

        MeasurementsTableColumn {
            role: "Z"
            title: qsTr("Z")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: positionDelegate
        }

        MeasurementsTableColumn {
            role: "Roll"
            title: qsTr("Roll")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: orientationDelegate
        }

        MeasurementsTableColumn {
            role: "Pitch"
            title: qsTr("Pitch")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: orientationDelegate
        }

        MeasurementsTableColumn {
            role: "Yaw"
            title: qsTr("Yaw")
            isPosition: true
            visible: measurementsTable.isPositionVisible
            delegate: orientationDelegate
        }

        MeasurementsTableColumn {
            role: "B"
            title: measurementsTable.withUnit(qsTr("B"), measurementsTable.unit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "dB"
            title: measurementsTable.withUnit(qsTr("ε(B)"), measurementsTable.uncertaintyUnit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "BBprime"
            title: measurementsTable.withUnit(qsTr("B·B'"), measurementsTable.unit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "Bx"
            title: measurementsTable.withUnit(measurementsTable.bxLabel, measurementsTable.unit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "By"
            title: measurementsTable.withUnit(measurementsTable.byLabel, measurementsTable.unit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "Bz"
            title: measurementsTable.withUnit(measurementsTable.bzLabel, measurementsTable.unit)
            delegate: fieldDelegate
        }

        MeasurementsTableColumn {
            role: "T"
            title: qsTr("T [ADC]")
            delegate: textDelegate
        }
    }
}
