// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import ".."
import "../../Utils/Style.js" as Style

// Bx, By and Bz of the last block with their maxima.
ColumnLayout {
    id: fields

    spacing: 15

    KXCLabel {
        Layout.leftMargin: 10
        Layout.topMargin: 10
        text: qsTr("Last measurement of block")
    }

    Repeater {
        model: [
            {
                "name": "Bx",
                "last": "BxLastBlock",
                "maximum": "BxMax"
            },
            {
                "name": "By",
                "last": "ByLastBlock",
                "maximum": "ByMax"
            },
            {
                "name": "Bz",
                "last": "BzLastBlock",
                "maximum": "BzMax"
            }
        ]

        RowLayout {
            Layout.leftMargin: 10
            spacing: 40

            ValueDisplayer {
                Layout.preferredWidth: 220
                objectName: modelData.name.toLowerCase() + "Displayer"
                label: modelData.name
                value: ActivePageViewModel[modelData.last]
                unit: ActivePageViewModel.DisplayUnits
                pointSize: 18
                useCustomParserSignificatifNumber: true
            }

            ColumnValueDisplayer {
                objectName: modelData.name.toLowerCase() + "MaxDisplayer"
                label: qsTr("Maximum :")
                value: ActivePageViewModel[modelData.maximum]
                unit: ActivePageViewModel.DisplayUnits
                useCustomParserSignificatifNumber: true
            }
        }
    }

    TextButton {
        objectName: "resetMaximumButton"
        Layout.leftMargin: 10
        Layout.preferredWidth: 140
        Layout.preferredHeight: Style.TextButtonHeight
        text: qsTr("Reset maximum")
        onClicked: ActivePageViewModel.resetAllMaximum()
    }

    OutOfBoundsWarning {
        objectName: "outOfBoundsWarning"
        Layout.leftMargin: 10
        visible: ActivePageViewModel.AlarmParametersViewModel.FlagNotification
    }

    Item {
        Layout.fillHeight: true
    }
}
