// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Controls/MeasurementsTable"
import "../Controls/Meter"
import "../Widgets"
import "../Widgets/ParametersBoxes"

MeasurementPage {
    id: page

    objectName: "meterPage"
    isMeasurementValid: parametersBoxes.isMeasurementValid

    tabs: [
        PageTab {
            objectName: "componentTab"
            text: qsTr("Component")
            component: componentDisplayer
            sectionIndex: 0
        },
        PageTab {
            objectName: "plotTab"
            text: qsTr("2D Plot")
            component: measurementsChart2D
            sectionIndex: 1
        },
        PageTab {
            objectName: "tableTab"
            text: qsTr("Table")
            component: measurementsTable
            sectionIndex: 2
        }
    ]

    Component {
        id: componentDisplayer

        ComponentDisplayer {
        }
    }

    Component {
        id: measurementsChart2D

        FieldsPlot {
            chartData: ActivePageViewModel.MeterOperationDatasetViewModel.Chart2DData
        }
    }

    Component {
        id: measurementsTable

        MeasurementsTable {
            objectName: "measurementsTable"
            model: ActivePageViewModel.MeterOperationDatasetViewModel.TableData
            unit: ActivePageViewModel.DisplayUnits
            uncertaintyUnit: ActivePageViewModel.DisplayUncertaintyUnits
            isCommentVisible: true
            comment: ActivePageViewModel.CommentBlock
            bxLabel: qsTr("Bx")
            byLabel: qsTr("By")
            bzLabel: qsTr("Bz")
        }
    }

    MeterParametersBoxes {
        id: parametersBoxes

        objectName: "parametersBoxes"
        parent: page.boxArea
        width: page.boxWidth
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        spacing: 40

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            spacing: 5

            ValueUncertaintyDisplayer {
                objectName: "bDisplayer"
                // Room for the longest number, so that its neighbour stays in place.
                Layout.preferredWidth: Math.max(implicitWidth, 400)
                label: qsTr("B")
                value: ActivePageViewModel.BLastBlock
                unit: ActivePageViewModel.DisplayUnits
                uncertainty: ActivePageViewModel.dBLastBlock
                uncertaintyUnit: ActivePageViewModel.DisplayUncertaintyUnits
                displayValueUncertainty: !isNaN(ActivePageViewModel.dBLastBlock)
                pointSize: 24
                useCustomParserSignificatifNumber: true
            }

            RowValueDisplayer {
                objectName: "bMaxDisplayer"
                label: qsTr("Maximum :")
                value: ActivePageViewModel.BMax
                unit: ActivePageViewModel.DisplayUnits
                useCustomParserSignificatifNumber: true
                visible: page.currentTab === 0
            }
        }

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            spacing: 5

            ValueDisplayer {
                objectName: "bPrimeDisplayer"
                label: qsTr("B·B'")
                value: ActivePageViewModel.BPrimeLastBlock
                unit: ActivePageViewModel.DisplayUnits
                pointSize: 24
                useCustomParserSignificatifNumber: true
            }

            RowValueDisplayer {
                objectName: "bPrimeMaxDisplayer"
                label: qsTr("Maximum :")
                value: ActivePageViewModel.BPrimeMax
                unit: ActivePageViewModel.DisplayUnits
                useCustomParserSignificatifNumber: true
                visible: page.currentTab === 0
            }
        }

        Item {
            Layout.fillWidth: true
        }
    }
}
