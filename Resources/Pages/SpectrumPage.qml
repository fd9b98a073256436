// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import "../Controls"
import "../Controls/Chart2D"
import "../Controls/MeasurementsTable"
import "../Widgets"
import "../Widgets/ParametersBoxes"

MeasurementPage {
    id: page

    readonly property QtObject models: ActivePageViewModel.SpectrumOperationDatasetViewModel

    objectName: "spectrumPage"
    isMeasurementValid: parametersBoxes.isMeasurementValid
    onTabChanging: {
        // The plot asks for its data when it is complete.
        if (index === 0)
            ActivePageViewModel.unloadData();
    }

    tabs: [
        PageTab {
            objectName: "plotTab"
            text: qsTr("FFT Plot")
            component: spectrumChart
            sectionIndex: 0
        },
        PageTab {
            objectName: "tableTab"
            text: qsTr("Peaks Table")
            component: peakTable
            sectionIndex: 1
        }
    ]

    Component {
        id: spectrumChart

        SpectrumChart2D {
            dataModel: page.models.FFTChart2DData
            verticalAxisLabel: qsTr("Field strength")
            horizontalAxisLabel: qsTr("F [Hz]")
            unit: ActivePageViewModel.DisplayUnits
            currentField: fieldComboBox.currentIndex
            limitFileLoaded: ActiveOperation.LimitsFileLoaded
            limitFileConverted: ActiveOperation.LimitsFile.Converted
        }
    }

    Component {
        id: peakTable

        SpectrumPeakTable {
            objectName: "spectrumPeakTable"
            source: page.models.TableData
            unit: ActivePageViewModel.DisplayUnits
        }
    }

    SpectrumParametersBoxes {
        id: parametersBoxes

        objectName: "parametersBoxes"
        parent: page.boxArea
        width: page.boxWidth
    }

    GridLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        // Room for the threshold, so that the view keeps its height.
        Layout.preferredHeight: 40
        columns: 3
        columnSpacing: 30

        ParametersComboBox {
            id: fieldComboBox

            objectName: "fieldComboBox"
            Layout.fillWidth: false
            text: qsTr("Field component")
            viewModel: ActivePageViewModel
            choices: ActivePageViewModel.FieldNames
            indexProperty: "SelectedFieldIndex"
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            ParameterField {
                objectName: "thresholdField"
                Layout.fillWidth: false
                Layout.preferredWidth: 120
                label: qsTr("Threshold")
                unit: Unit.DECIBEL
                value: 10
                minValue: 0
                maxValue: Number.MAX_VALUE
                refreshesWithBounds: false
                refreshesAfterEdit: false
                visible: page.currentTab === 1
                onEdited: ActivePageViewModel.Threshold = number
            }

            KXCLabel {
                objectName: "aboveNoiseLabel"
                text: qsTr("above noise")
                visible: page.currentTab === 1
            }
        }

        OutOfBoundsWarning {
            objectName: "outOfBoundsWarning"
            imageSize: 20
            pointSize: 10
            visible: ActivePageViewModel.AlarmParametersViewModel.FlagNotification
        }
    }
}
