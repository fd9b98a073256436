// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The boxes of the meter page.
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

    AlarmParametersBox {
        expanded: false
    }

    SaveImportParametersParametersBox {
        expanded: false
    }

    FilterParametersBox {
        viewModel: ActivePageViewModel.MeterOperationDatasetViewModel.Chart2DData
        visible: ActivePageViewModel.SectionIndex === 1
        expanded: false
    }
}
