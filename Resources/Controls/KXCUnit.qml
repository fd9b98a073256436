// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The text of a unit, no wider than it needs to be.
KXCLabel {
    id: unitLabel

    property int unit: 0

    function fitWidth() {
        width = Math.min(100, paintedWidth);
    }

    text: Utils.getUnitText(unit)
    pointSize: 16
    wrapMode: Text.NoWrap
    width: 100
    onTextChanged: fitWidth()

    // The first text is set before the font is known.
    Component.onCompleted: {
        if (text !== "")
            fitWidth();
    }
}
