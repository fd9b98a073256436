// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Utils/Style.js" as Style

// A label, a value and its unit under each other, in one size.
ColumnLayout {
    id: displayer

    property alias label: nameLabel.text
    property alias value: valueLabel.value
    property alias unit: unitLabel.unit
    property alias precision: valueLabel.precision
    property alias significantNb: valueLabel.significantNb
    property alias displayValue: valueLabel.displayValue
    property alias useCustomParserSignificatifNumber: valueLabel.useCustomParserSignificatifNumber
    property int generalPointSize: 10

    spacing: 2
    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + valueLabel.text + " " + unitLabel.text

    KXCLabel {
        id: nameLabel

        objectName: "label"
        pointSize: displayer.generalPointSize
        textColor: Style.TextLightColor
        Accessible.ignored: true
    }

    RowLayout {
        spacing: 8

        KXCValue {
            id: valueLabel

            objectName: "value"
            unit: displayer.unit
            pointSize: displayer.generalPointSize
            textColor: Style.TextLightColor
            wrapMode: Text.NoWrap
            Accessible.ignored: true
        }

        KXCUnit {
            id: unitLabel

            pointSize: displayer.generalPointSize
            textColor: Style.TextLightColor
            Accessible.ignored: true
        }
    }
}
