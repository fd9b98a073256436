// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The boxes of the spectrum page.
Column {
    id: boxes

    readonly property bool isMeasurementValid: measurementBox.valid

    spacing: 10

    RecordParametersBox {
    }

    MeasurementParametersBox {
        id: measurementBox

        busTriggerComboBox.visible: viewModel.TriggerPluginVisible
        acquisitionRateInput.visible: false
        immediateAcquisitionRateInput.visible: false
        blockSizeInput.visible: !MainViewModel.SmallWindowSize
        useMinMaxFrequencyInput: true
    }

    ReplayParametersBox {
        isFrequencyMinMaxVisible: true
    }

    LimitsParametersBox {
    }

    AlarmParametersBox {
        expanded: false
        axisVisible: false
        minimumVisible: false
        maximumVisible: false
    }

    SaveImportParametersParametersBox {
        expanded: false
    }
}
