// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The boxes of the AC analysis page.
Column {
    id: boxes

    readonly property bool isMeasurementValid: measurementBox.valid

    spacing: 10

    RecordParametersBox {
    }

    MeasurementParametersBox {
        id: measurementBox

        busTriggerComboBox.visible: viewModel.TriggerPluginVisible
        acquisitionRateInput.visible: !viewModel.IsImmediateAcquisitionRateVisible
        numberOfBinsInput.visible: false
    }

    ReplayParametersBox {
    }

    LimitsParametersBox {
    }

    AlarmParametersBox {
        expanded: false
        minimumVisible: false
        maximumVisible: false
    }

    SaveImportParametersParametersBox {
        expanded: false
    }
}
