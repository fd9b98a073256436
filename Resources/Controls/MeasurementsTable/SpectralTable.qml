// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import Kestrix.CUnit 1.0
import Kestrix.Charts 1.0
import ".."

// A table of the analysis of one block.
Table {
    id: table

    property alias source: steadyTable.source
    property int unit: Unit.UNKNOWN

    readonly property Component numberDelegate: Component {
        MeasurementsTableValueCell {
            precision: 4
            useCustomParserSignificatifNumber: false
        }
    }
    readonly property Component textDelegate: Component {
        TableCell {
            TableTextCell {
                anchors.fill: parent
                anchors.leftMargin: 1
                anchors.rightMargin: 1
                letterLabel: false
                // Two numbers with six digits and exponents each are wider than the column.
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: 5
                text: styleData.value === undefined ? "" : styleData.value
            }
        }
    }

    function withUnit(title) {
        return title + " [" + Utils.getUnitText(unit) + "]";
    }

    model: SteadyTable {
        id: steadyTable

        active: table.visible
    }
}
