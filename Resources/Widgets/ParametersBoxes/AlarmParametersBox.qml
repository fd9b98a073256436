// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import "../../Controls"

// When the field is out of its limits, and what happens then. A page shows what its alarm knows.
ParametersBox {
    id: box

    property bool stateVisible: true
    property bool axisVisible: true
    property bool minimumVisible: true
    property bool maximumVisible: true

    readonly property QtObject viewModel: ActivePageViewModel.AlarmParametersViewModel
    readonly property int limitUnit: typeof viewModel.DisplayAlarmUnits === "undefined" ? 1 : viewModel.DisplayAlarmUnits
    // Room for the longest state.
    readonly property int choiceWidth: 135
    readonly property int choiceRestoreMode: QtVerSix ? Binding.RestoreBindingOrValue : Binding.RestoreBinding

    objectName: "alarmBox"
    title: qsTr("Alarm")

    ParametersComboBox {
        objectName: "alarmStateComboBox"
        comboboxWidth: box.choiceWidth
        text: qsTr("State")
        visible: box.stateVisible
        writable: box.stateVisible
        restoreMode: box.choiceRestoreMode
        viewModel: box.viewModel
        choices: box.viewModel.StateNames
        indexProperty: "SelectedStateIndex"
    }

    ParametersComboBox {
        objectName: "alarmAxisComboBox"
        comboboxWidth: box.choiceWidth
        text: qsTr("Axis")
        visible: box.axisVisible
        writable: box.axisVisible
        restoreMode: box.choiceRestoreMode
        viewModel: typeof box.viewModel.AxisNames === "undefined" ? null : box.viewModel
        choices: viewModel !== null ? viewModel.AxisNames : []
        indexProperty: "SelectedAxisIndex"
    }

    ParameterField {
        objectName: "alarmMinimumField"
        label: qsTr("Minimum")
        visible: box.minimumVisible
        unit: box.limitUnit
        minValue: Number.NEGATIVE_INFINITY
        maxValue: Number.POSITIVE_INFINITY
        value: typeof box.viewModel.Minimum === "undefined" ? 0 : box.viewModel.Minimum
        onEdited: box.viewModel.Minimum = number
    }

    ParameterField {
        objectName: "alarmMaximumField"
        label: qsTr("Maximum")
        visible: box.maximumVisible
        unit: box.limitUnit
        minValue: Number.NEGATIVE_INFINITY
        maxValue: Number.POSITIVE_INFINITY
        value: typeof box.viewModel.Maximum === "undefined" ? 0 : box.viewModel.Maximum
        onEdited: box.viewModel.Maximum = number
    }
}
