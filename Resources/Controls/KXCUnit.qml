// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

KXCLabel {
    property int unit: 0

    text: Utils.getUnitText(unit)
    pointSize: 16
    wrapMode: Text.NoWrap
    width: 100
    onTextChanged: width = Math.min(100, paintedWidth)
}
