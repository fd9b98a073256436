// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A value and its uncertainty with their units in one row, above a description.
ColumnLayout {
    id: displayer

    property alias label: description.text
    property alias value: valueLabel.value
    property alias unit: unitLabel.unit
    property alias uncertainty: uncertaintyLabel.value
    property alias uncertaintyUnit: uncertaintyUnitLabel.unit
    property alias pointSize: valueLabel.pointSize
    property alias precision: valueLabel.precision
    property alias significantNb: valueLabel.significantNb
    property alias displayValue: valueLabel.displayValue
    property alias useCustomParserSignificatifNumber: valueLabel.useCustomParserSignificatifNumber
    property bool displayValueUncertainty: true

    spacing: 0
    Accessible.role: Accessible.StaticText
    Accessible.name: [label, valueLabel.text, unitLabel.text, "\u00B1", uncertaintyLabel.text, uncertaintyUnitLabel.text].join(" ")

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

        KXCLabel {
            Layout.alignment: Qt.AlignBaseline
            text: "\u00B1"
            pointSize: 16
            textColor: Style.TextLightColor
            Accessible.ignored: true
        }

        KXCValue {
            id: uncertaintyLabel

            objectName: "uncertainty"
            Layout.alignment: Qt.AlignBaseline
            unit: displayer.uncertaintyUnit
            pointSize: 16
            precision: valueLabel.precision
            significantNb: valueLabel.significantNb
            useCustomParserSignificatifNumber: valueLabel.useCustomParserSignificatifNumber
            displayValue: displayer.displayValueUncertainty
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }

        KXCUnit {
            id: uncertaintyUnitLabel

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
