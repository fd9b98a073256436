// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The number of a block, from 1.
ParameterField {
    id: field

    property int numBlocks: 0

    integerValueField: true
    toolTipPrecision: 0
    minValue: 1
    maxValue: Math.max(numBlocks, 1)
    toolTipText: qsTr("Min = %1 Max = %2").arg(localText(minValue)).arg(localText(maxValue))
}
