// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import ".."

// The field at the place of the last block, the components in the frame of the mapper.
ColumnLayout {
    id: numeric

    objectName: "mappingNumeric"
    spacing: 25

    KXCLabel {
        text: qsTr("Last measurement of block")
    }

    RowLayout {
        spacing: 40

        ValueUncertaintyDisplayer {
            objectName: "bDisplayer"
            Layout.preferredWidth: Math.max(implicitWidth, 320)
            label: qsTr("B")
            value: ActivePageViewModel.BLastBlock
            unit: ActivePageViewModel.DisplayUnits
            uncertainty: ActivePageViewModel.dBLastBlock
            uncertaintyUnit: ActivePageViewModel.DisplayUncertaintyUnits
            displayValueUncertainty: !isNaN(ActivePageViewModel.dBLastBlock)
            precision: 2
            pointSize: 24
        }

        ValueDisplayer {
            objectName: "bPrimeDisplayer"
            Layout.preferredWidth: 200
            label: qsTr("B\u00B7B'")
            value: ActivePageViewModel.BPrimeLastBlock
            unit: ActivePageViewModel.DisplayUnits
            precision: 2
            pointSize: 24
        }
    }

    RowLayout {
        spacing: 40

        Repeater {
            model: [
                {
                    "name": "Bx",
                    "last": "BxLastBlock"
                },
                {
                    "name": "By",
                    "last": "ByLastBlock"
                },
                {
                    "name": "Bz",
                    "last": "BzLastBlock"
                }
            ]

            ValueDisplayer {
                objectName: modelData.name.toLowerCase() + "Displayer"
                Layout.preferredWidth: 200
                label: modelData.name + "'"
                value: ActivePageViewModel[modelData.last]
                unit: ActivePageViewModel.DisplayUnits
                precision: 2
                pointSize: 20
            }
        }
    }

    Item {
        Layout.fillHeight: true
    }

    OutOfBoundsWarning {
        objectName: "outOfBoundsWarning"
        visible: ActivePageViewModel.AlarmParametersViewModel.FlagNotification
    }
}
