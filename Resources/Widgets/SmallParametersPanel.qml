// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// The parameter boxes of a page in the small layout: closed to a button, or expanded under it.
ColumnLayout {
    id: smallPanel

    default property alias boxes: panel.boxes
    readonly property alias boxArea: panel.boxArea

    width: MainViewModel.ParameterMenuExpanded ? Style.ParametersPanelWidth : Style.SmallMainMenuClosedWidth
    spacing: 30

    SmallMenuButton {
        objectName: "parametersMenuToggle"
        Layout.fillWidth: true
        text: qsTr("Parameters")
        imageSource: "qrc:///Resources/Images/Parameter.svg"
        imageSize: 30
        imageLeftMargin: 15
        isExpanded: MainViewModel.ParameterMenuExpanded
        onClicked: MainViewModel.ParameterMenuExpanded = !MainViewModel.ParameterMenuExpanded
    }

    ParametersPanel {
        id: panel

        Layout.fillWidth: true
        Layout.fillHeight: true
        visible: MainViewModel.ParameterMenuExpanded
    }

    Item {
        Layout.fillHeight: true
        visible: !panel.visible
    }
}
