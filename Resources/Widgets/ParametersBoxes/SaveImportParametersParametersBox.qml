// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15

// Parameters to and from a file of the user's choice.
ParametersBox {
    id: box

    readonly property QtObject manager: ActiveOperation.RecordingManager

    objectName: "saveImportParametersBox"
    title: qsTr("Save/Load params.")

    RowLayout {
        Layout.fillWidth: true
        spacing: 10

        ParametersBoxButton {
            objectName: "loadParametersButton"
            Layout.fillWidth: true
            text: qsTr("Load")
            enabled: !box.manager.IsIdleWithData && !box.manager.IsPlayingBack && !ActiveOperation.SessionInProgress
            onClicked: ActivePageViewModel.loadParameters()
        }

        ParametersBoxButton {
            objectName: "saveParametersButton"
            Layout.fillWidth: true
            text: qsTr("Save")
            onClicked: ActivePageViewModel.saveParameters()
        }
    }
}
