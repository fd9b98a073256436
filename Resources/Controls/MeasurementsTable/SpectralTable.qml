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
                letterLabel: false
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
