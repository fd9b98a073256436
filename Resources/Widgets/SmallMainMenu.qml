// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Page menu of the small layout, closed to its icons or expanded.
ColumnLayout {
    spacing: 0

    SmallMenuButton {
        objectName: "smallMenuToggle"
        Layout.preferredHeight: Style.SmallMainMenuButtonHeight
        text: qsTr("Menu")
        imageSource: "qrc:///Resources/Images/Menu/Menu.svg"
        imageSize: 30
        imageLeftMargin: 15
        isExpanded: MainViewModel.PageMenuExpanded
        onClicked: MainViewModel.PageMenuExpanded = !MainViewModel.PageMenuExpanded
    }

    SmallMenuButton {
        objectName: "smallMeterMenuButton"
        Layout.preferredHeight: Style.SmallMainMenuButtonHeight
        text: qsTr("Meter")
        imageSource: "qrc:///Resources/Images/Menu/Meter.svg"
        isExpanded: MainViewModel.PageMenuExpanded
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "MeterOperation"
        visible: Settings.EnableMeterMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayMeterPage();
        }
    }

    SmallMenuButton {
        objectName: "smallSpectrumMenuButton"
        Layout.preferredHeight: Style.SmallMainMenuButtonHeight
        text: qsTr("Spectrum")
        imageSource: "qrc:///Resources/Images/Menu/Spectrum.svg"
        isExpanded: MainViewModel.PageMenuExpanded
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "SpectrumOperation"
        visible: Settings.EnableSpectrumMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displaySpectrumPage();
        }
    }

    SmallMenuButton {
        objectName: "smallAcAnalysisMenuButton"
        Layout.preferredHeight: Style.SmallMainMenuButtonHeight
        text: qsTr("AC Analysis")
        imageSource: "qrc:///Resources/Images/Menu/AcAnalysis.svg"
        isExpanded: MainViewModel.PageMenuExpanded
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "AcAnalysisOperation"
        visible: Settings.EnableAcAnalysisMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayAcAnalysisPage();
        }
    }

    SmallMenuButton {
        objectName: "smallMappingMenuButton"
        Layout.preferredHeight: Style.SmallMainMenuButtonHeight
        text: qsTr("Mapping")
        imageSource: "qrc:///Resources/Images/Menu/Mapping.svg"
        isExpanded: MainViewModel.PageMenuExpanded
        isCurrent: ActivePageViewModel !== null && ActivePageViewModel.Name === "MappingOperation"
        visible: Settings.EnableMappingMode
        onClicked: {
            if (!isCurrent)
                MainViewModel.displayMappingPage();
        }
    }

    Item {
        Layout.fillHeight: true
    }
}
