// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// A number as text, formatted by the first rule that applies.
KXCLabel {
    id: valueLabel

    property int unit: 0
    property bool convertValue: true
    property real ppmReference: 0
    property double value: typeof styleData === "undefined" || styleData.value === null || styleData.value === undefined ? NaN : Number(styleData.value)
    property bool displayValue: true
    property int precision: 2
    property int significantNb: -1
    property bool useCustomParserPointAlignment: false
    property bool useCustomParserSignificatifNumber: false
    property bool useLeftpadding: false

    function formattedValue() {
        if (!displayValue)
            return " --";
        if (useCustomParserPointAlignment)
            return Utils.doubleToStringPointAlignment(value);
        if (useCustomParserSignificatifNumber)
            return Utils.doubleToString(value, significantNb, useLeftpadding);
        const locale = Qt.locale();
        return value.toLocaleString(locale, 'f', precision).split(locale.groupSeparator).join("");
    }

    letterLabel: false
    text: formattedValue()
}
