// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// A number of the parameters within the bounds of the instrument; without an instrument any positive number.
KXCValueField {
    id: field

    // A range of the instrument, or null.
    property QtObject bound: null
    property int toolTipPrecision: 3
    property real upperLimit: Number.MAX_VALUE
    property bool refreshesWithBounds: true
    property bool refreshesAfterEdit: true

    // The user has entered a number, to be stored with the parameters.
    signal edited(real number)

    function localText(number) {
        return number.toLocaleString(Qt.locale(), 'f', toolTipPrecision);
    }

    Layout.fillWidth: true
    minValue: bound !== null ? bound.Min : Number.MIN_VALUE
    maxValue: Math.min(bound !== null ? bound.Max : Number.MAX_VALUE, upperLimit)
    toolTipText: bound !== null ? qsTr("Min = %1 Max = %2").arg(localText(minValue)).arg(localText(maxValue)) : ""
    onMinValueChanged: {
        if (refreshesWithBounds)
            forceRefreshValue();
    }
    onMaxValueChanged: {
        if (refreshesWithBounds)
            forceRefreshValue();
    }
    onValueEditDoneChanged: {
        if (!valueEditDone)
            return;
        edited(valueInput);
        if (refreshesAfterEdit)
            forceRefreshValue();
        valueEditDone = false;
    }
}
