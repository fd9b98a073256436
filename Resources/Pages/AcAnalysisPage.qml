// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Controls/MeasurementsTable"
import "../Widgets"
import "../Widgets/ParametersBoxes"

MeasurementPage {
    id: page

    readonly property QtObject models: ActivePageViewModel.AcAnalysisOperationDatasetViewModel

    objectName: "acAnalysisPage"
    isMeasurementValid: parametersBoxes.isMeasurementValid
    stopBeforeEnd: true

    tabs: [
        PageTab {
            objectName: "plotTab"
            text: qsTr("2D Plot")
            component: measurementsChart2D
            sectionIndex: 0
        },
        PageTab {
            objectName: "tableTab"
            text: qsTr("Freq. Table")
            component: frequencyTable
            sectionIndex: 1
        }
    ]

    Component {
        id: measurementsChart2D

        FieldsPlot {
            chartData: page.models.Chart2DData
        }
    }

    Component {
        id: frequencyTable

        FrequencyTable {
            objectName: "frequencyTable"
            source: page.models.TableData
            unit: ActivePageViewModel.DisplayUnits
        }
    }

    AcAnalysisParametersBoxes {
        id: parametersBoxes

        objectName: "parametersBoxes"
        parent: page.boxArea
        width: page.boxWidth
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        spacing: 30

        ParametersComboBox {
            objectName: "figureOfMeritComboBox"
            Layout.fillWidth: false
            text: qsTr("Figure of merit")
            comboboxWidth: 200
            viewModel: ActivePageViewModel
            choices: ActivePageViewModel.FigureOfMeritNames
            indexProperty: "SelectedFigureOfMeritIndex"
        }

        OutOfBoundsWarning {
            objectName: "outOfBoundsWarning"
            imageSize: 20
            pointSize: 10
            visible: page.models.TableData.FlagNotification
        }

        Item {
            Layout.fillWidth: true
        }
    }
}
