// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// How a plot smooths its signals.
ParametersBox {
    id: box

    // The model of the plot.
    property QtObject viewModel: null

    objectName: "filterBox"
    title: qsTr("Smoothing filter")

    ParametersComboBox {
        objectName: "averagingModeComboBox"
        text: qsTr("Type")
        viewModel: box.viewModel
        choices: box.viewModel !== null ? box.viewModel.AveragingModeNames : []
        indexProperty: "AveragingModeIndex"
    }

    ParameterField {
        objectName: "averagingCountField"
        label: qsTr("Count")
        integerValueField: true
        minValue: 1
        maxValue: Number.POSITIVE_INFINITY
        value: box.viewModel !== null ? box.viewModel.AveragingCount : 1
        onEdited: box.viewModel.AveragingCount = number
    }

    ParametersBoxButton {
        objectName: "saveFilterButton"
        Layout.alignment: Qt.AlignRight
        text: qsTr("Save")
        onClicked: box.viewModel.saveAveragingParameter()
    }
}
