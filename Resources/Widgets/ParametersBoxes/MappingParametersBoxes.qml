// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// The boxes of the mapping page.
Column {
    id: boxes

    readonly property bool areParametersValid: measurementBox.valid && mappingBox.valid

    spacing: 10

    RecordParametersBox {
    }

    MeasurementParametersBox {
        id: measurementBox

        childrenEnabled: !ActiveOperation.SessionInProgress
        busTriggerComboBox.visible: viewModel.TriggerPluginVisible
        acquisitionRateInput.visible: !viewModel.IsImmediateAcquisitionRateVisible
        displayRateInput.visible: false
        numberOfBinsInput.visible: false
    }

    ReplayParametersBox {
    }

    AlarmParametersBox {
        expanded: false
    }

    MappingParametersBox {
        id: mappingBox
    }

    SaveImportParametersParametersBox {
        expanded: false
    }

    FilterParametersBox {
        viewModel: ActivePageViewModel.MappingOperationDatasetViewModel.Chart2DData
        visible: ActivePageViewModel.SectionIndex === 1
        expanded: false
    }
}
