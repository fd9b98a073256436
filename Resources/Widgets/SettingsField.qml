// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"

// A number of the settings, zero or more.
KXCValueField {
    // The user has entered a number that is in range.
    signal edited(real number)

    Layout.fillWidth: true
    minValue: 0
    maxValue: Number.POSITIVE_INFINITY
    onValueEditDoneChanged: {
        if (!valueEditDone)
            return;
        // The settings have no place for a negative number: it stays in the field, in red.
        if (rangeValid)
            edited(valueInput);
        valueEditDone = false;
    }
}
