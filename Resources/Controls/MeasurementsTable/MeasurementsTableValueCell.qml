// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import ".."
import "../../Utils/Style.js" as Style

// A number of the results table; what is not a number shows as "--".
TableCell {
    id: cell

    property int precision: 0
    property int significantNb: -1
    property bool useCustomParserSignificatifNumber: true

    KXCValue {
        anchors.fill: parent
        displayValue: !isNaN(value)
        precision: cell.precision
        significantNb: cell.significantNb
        convertValue: false
        useCustomParserSignificatifNumber: cell.useCustomParserSignificatifNumber
        pointSize: Style.TableTextSize
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        wrapMode: Text.NoWrap
    }
}
