// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0

// How the instrument measures. A page chooses the fields that it shows.
ParametersBox {
    id: box

    property alias unitsComboBox: unitsChoice
    property alias triggerComboBox: triggerChoice
    property alias busTriggerComboBox: busTriggerChoice
    property alias acquisitionRateInput: acquisitionRateField
    property alias immediateAcquisitionRateInput: immediateAcquisitionRateField
    property alias numberOfBinsInput: numberOfBinsField
    property alias displayRateInput: displayRateField
    property alias blockSizeInput: blockSizeField
    property alias averagingInput: averagingField
    property bool useMinMaxFrequencyInput: false

    // Whether a measurement can be started with these numbers.
    readonly property bool valid: acquisitionRateField.valid && (displayRateField.valid || !displayRateField.fieldVisibility) && blockSizeField.valid && averagingField.valid && (!useMinMaxFrequencyInput || frequencyMinField.valid && frequencyMaxField.valid) && unitsChoice.currentIndex >= 0

    readonly property QtObject model: ActiveOperation.OperationParameters.MeasurementParameters
    readonly property QtObject viewModel: ActivePageViewModel.MeasurementParametersViewModel
    readonly property QtObject manager: ActiveOperation.RecordingManager
    readonly property QtObject instrument: ActiveOperation.Instrument
    // Share of the band that is shown in the one from 0 on.
    readonly property real bandShare: (model.FrequencyMax - model.FrequencyMin) / model.FrequencyMax

    objectName: "measurementBox"
    title: qsTr("Measurement")
    visible: !manager.IsIdleWithData && !manager.IsPlayingBack
    childrenEnabled: !manager.IsRecording

    ParametersComboBox {
        id: unitsChoice

        objectName: "unitsComboBox"
        text: qsTr("Units")
        viewModel: box.viewModel
        choices: box.viewModel.UnitsList
        indexProperty: "SelectedUnitIndex"
        // Without an instrument there is one entry, which stands in no way of a replay.
        fallsBackToFirst: box.instrument === null
    }

    ParametersComboBox {
        objectName: "uncertaintyUnitsComboBox"
        text: qsTr("ε Units")
        viewModel: box.viewModel
        choices: box.viewModel.UncertaintyUnitsList
        indexProperty: "SelectedUncertaintyUnitIndex"
        fallsBackToFirst: true
    }

    ParametersComboBox {
        objectName: "rangeComboBox"
        text: qsTr("Range")
        viewModel: box.viewModel
        choices: box.viewModel.Ranges
        indexProperty: "SelectedRangeIndex"
        unitVisible: true
    }

    ParametersComboBox {
        id: triggerChoice

        objectName: "triggerComboBox"
        text: qsTr("Trigger")
        viewModel: box.viewModel
        choices: box.viewModel.Triggers
        indexProperty: "SelectedTriggerIndex"
    }

    ParametersComboBox {
        id: busTriggerChoice

        objectName: "busTriggerComboBox"
        text: qsTr("Bus trigger")
        viewModel: box.viewModel
        choices: box.viewModel.TriggerPlugins
        indexProperty: "SelectedTriggerPluginIndex"
    }

    ParameterField {
        id: frequencyMinField

        objectName: "frequencyMinField"
        label: qsTr("Minimum Frequency")
        unit: Unit.HZ
        visible: box.useMinMaxFrequencyInput
        bound: box.instrument !== null ? box.instrument.FrequencyMinBound : null
        refreshesWithBounds: false
        refreshesAfterEdit: false
        value: box.model.FrequencyMin
        onEdited: box.model.FrequencyMin = number
    }

    ParameterField {
        id: frequencyMaxField

        objectName: "frequencyMaxField"
        label: qsTr("Maximum Frequency")
        unit: Unit.HZ
        visible: box.useMinMaxFrequencyInput
        enabled: !box.viewModel.IsImmediateAcquisitionRateVisible
        bound: box.instrument !== null ? box.instrument.FrequencyMaxBound : null
        refreshesWithBounds: false
        refreshesAfterEdit: false
        value: box.model.FrequencyMax
        onEdited: box.model.FrequencyMax = number
    }

    ParameterField {
        id: acquisitionRateField

        objectName: "acquisitionRateField"
        label: qsTr("Acquisition Rate")
        unit: Unit.HZ
        enabled: box.viewModel.IsAcquisitionRateEnable
        fieldVisibility: box.viewModel.IsAcquisitionRateVisible
        bound: box.instrument !== null ? box.instrument.KestrixAcquisitionRateBound : null
        value: box.model.AcquisitionRate
        onEdited: box.model.AcquisitionRate = number
    }

    ParameterField {
        id: immediateAcquisitionRateField

        objectName: "immediateAcquisitionRateField"
        label: qsTr("Acquisition Rate")
        unit: Unit.HZ
        visible: box.viewModel.IsImmediateAcquisitionRateVisible
        enabled: false
        bound: box.instrument !== null ? box.instrument.KestrixAcquisitionRateBound : null
        value: box.model.AcquisitionRate
    }

    ParameterField {
        id: numberOfBinsField

        objectName: "numberOfBinsField"
        label: qsTr("Number of Bins")
        refreshesWithBounds: false
        value: box.model.NumberOfBins * box.bandShare
        onEdited: box.model.NumberOfBins = number / box.bandShare
    }

    ParameterField {
        id: displayRateField

        objectName: "displayRateField"
        label: qsTr("Display Rate")
        unit: Unit.HZ
        enabled: box.viewModel.IsDisplayEnable
        fieldVisibility: box.viewModel.IsDisplayRateVisible
        bound: box.instrument !== null ? box.instrument.KestrixDisplayRateBound : null
        upperLimit: box.instrument !== null ? acquisitionRateField.value : Number.MAX_VALUE
        toolTipPrecision: 5
        value: box.model.DisplayRate
        onEdited: box.model.DisplayRate = number
    }

    ParameterField {
        id: blockSizeField

        objectName: "blockSizeField"
        label: qsTr("Block size")
        integerValueField: true
        bound: box.instrument !== null ? box.instrument.BlockSizeBound : null
        toolTipPrecision: 0
        value: box.model.BlockSize
        onEdited: box.model.BlockSize = number
    }

    ParameterField {
        id: averagingField

        objectName: "averagingField"
        label: qsTr("Averaging")
        integerValueField: true
        bound: box.instrument !== null ? box.instrument.AveragingBound : null
        toolTipPrecision: 0
        refreshesAfterEdit: false
        value: box.model.Averaging
        onEdited: {
            if (rangeValid)
                box.model.Averaging = number;
        }
    }

    ParametersBoxButton {
        objectName: "defaultButton"
        Layout.alignment: Qt.AlignRight
        Layout.preferredWidth: box.width / 2.5
        text: qsTr("Default")
        onClicked: ActivePageViewModel.setDefaultParameters()
    }
}
