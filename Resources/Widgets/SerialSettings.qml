// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Layouts 1.15
import "../Controls"

// Port and speed for instruments behind a serial line.
Item {
    KXCSettingsSection {
        width: Math.min(parent.width, 600)
        title: qsTr("Serial port settings")

        KXCComboBox {
            id: portBox

            objectName: "serialPortBox"
            text: qsTr("Serial port")
            model: ConnectionPageViewModel.SerialPortNames
            currentIndex: ConnectionPageViewModel.SelectedSerialPortNameIndex
        }

        Binding {
            target: ConnectionPageViewModel
            property: "SelectedSerialPortNameIndex"
            value: portBox.currentIndex
            restoreMode: Binding.RestoreNone
        }

        KXCComboBox {
            id: baudRateBox

            objectName: "baudRateBox"
            text: qsTr("Baud rate")
            model: ConnectionPageViewModel.BaudrateNames
            currentIndex: ConnectionPageViewModel.SelectedBaudrateIndex
        }

        Binding {
            target: ConnectionPageViewModel
            property: "SelectedBaudrateIndex"
            value: baudRateBox.currentIndex
            restoreMode: Binding.RestoreNone
        }
    }
}
