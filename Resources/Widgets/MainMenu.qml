// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Page menu of the wide layout.
ColumnLayout {
    spacing: 0

    MenuButton {
        objectName: "meterMenuButton"
        Layout.fillWidth: true
        Layout.preferredHeight: Style.MainMenuButtonHeight
        text: qsTr("Meter")
        imageSource: "qrc:///Resources/Images/Menu/Meter.svg"
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "MeterOperation"
        enabled: !MainViewModel.LoaderSourceChanging
        visible: Settings.EnableMeterMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayMeterPage();
        }
    }

    MenuButton {
        objectName: "spectrumMenuButton"
        Layout.fillWidth: true
        Layout.preferredHeight: Style.MainMenuButtonHeight
        text: qsTr("Spectrum")
        imageSource: "qrc:///Resources/Images/Menu/Spectrum.svg"
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "SpectrumOperation"
        enabled: !MainViewModel.LoaderSourceChanging
        visible: Settings.EnableSpectrumMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displaySpectrumPage();
        }
    }

    MenuButton {
        objectName: "acAnalysisMenuButton"
        Layout.fillWidth: true
        Layout.preferredHeight: Style.MainMenuButtonHeight
        text: qsTr("AC Analysis")
        imageSource: "qrc:///Resources/Images/Menu/AcAnalysis.svg"
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "AcAnalysisOperation"
        enabled: !MainViewModel.LoaderSourceChanging
        visible: Settings.EnableAcAnalysisMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayAcAnalysisPage();
        }
    }

    MenuButton {
        objectName: "mappingMenuButton"
        Layout.fillWidth: true
        Layout.preferredHeight: Style.MainMenuButtonHeight
        text: qsTr("Mapping")
        imageSource: "qrc:///Resources/Images/Menu/Mapping.svg"
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "MappingOperation"
        enabled: !MainViewModel.LoaderSourceChanging
        visible: Settings.EnableMappingMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayMappingPage();
        }
    }

    Rectangle {
        Layout.fillWidth: true
        Layout.fillHeight: true
        color: Style.BoxBackgroundColor

        Rectangle {
            anchors.top: parent.top
            anchors.bottom: parent.bottom
            anchors.right: parent.right
            width: Style.BorderWidth
            color: Style.BordersColor
        }

        Rectangle {
            anchors.left: parent.left
            anchors.right: parent.right
            anchors.top: parent.top
            height: Style.BorderWidth
            color: Style.BordersColor
        }
    }
}
