// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A value with its unit, above a description.
ColumnLayout {
    id: displayer

    property alias label: description.text
    property alias value: valueLabel.value
    property alias unit: unitLabel.unit
    property alias unitVisible: unitLabel.visible
    property alias pointSize: valueLabel.pointSize
    property alias precision: valueLabel.precision
    property alias significantNb: valueLabel.significantNb
    property alias displayValue: valueLabel.displayValue
    property alias useCustomParserSignificatifNumber: valueLabel.useCustomParserSignificatifNumber
    property alias useLeftpadding: valueLabel.useLeftpadding

    spacing: 0
    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + valueLabel.text + " " + unitLabel.text

    RowLayout {
        spacing: 8

        KXCValue {
            id: valueLabel

            objectName: "value"
            unit: displayer.unit
            pointSize: 16
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }

        KXCUnit {
            id: unitLabel

            Layout.alignment: Qt.AlignBaseline
            textColor: Style.TextLightColor
            Accessible.ignored: true
        }
    }

    KXCLabel {
        id: description

        pointSize: 12
        textColor: Style.TextLightColor
        Accessible.ignored: true
    }
}
