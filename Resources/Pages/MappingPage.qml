// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import "../Controls"
import "../Controls/Chart3D"
import "../Controls/Mapping"
import "../Controls/MeasurementsTable"
import "../Utils/Style.js" as Style
import "../Widgets"
import "../Widgets/ParametersBoxes"

MeasurementPage {
    id: page

    readonly property QtObject models: ActivePageViewModel.MappingOperationDatasetViewModel

    objectName: "mappingPage"
    isMapping: true
    isMeasurementValid: parametersBoxes.areParametersValid
    viewColor: Style.BoxBackgroundColor
    viewMargin: 10

    tabs: [
        PageTab {
            objectName: "numericTab"
            text: qsTr("Numeric")
            component: mappingNumeric
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
        },
        PageTab {
            objectName: "vectorTab"
            text: qsTr("Vector")
            component: vectorsChart3D
            sectionIndex: 3
        }
    ]

    Component {
        id: mappingNumeric

        MappingNumeric {
        }
    }

    Component {
        id: measurementsChart2D

        FieldsPlot {
            chartData: page.models.Chart2DData
            xAxisType: Settings.Mapping2DPlotHorizontalAxisType
            bxLabel: qsTr("Bx'")
            byLabel: qsTr("By'")
            bzLabel: qsTr("Bz'")
        }
    }

    Component {
        id: measurementsTable

        MeasurementsTable {
            objectName: "measurementsTable"
            model: page.models.TableData
            unit: ActivePageViewModel.DisplayUnits
            uncertaintyUnit: ActivePageViewModel.DisplayUncertaintyUnits
            isCommentVisible: true
            isPositionVisible: true
            // The shares of the many columns leave it nothing else.
            timpestampColumnMinWidth: 200
            comment: ActivePageViewModel.CommentBlock
            bxLabel: qsTr("Bx'")
            byLabel: qsTr("By'")
            bzLabel: qsTr("Bz'")
        }
    }

    Component {
        id: vectorsChart3D

        VectorsChart3D {
        }
    }

    MappingParametersBoxes {
        id: parametersBoxes

        objectName: "parametersBoxes"
        parent: page.boxArea
        width: page.boxWidth
    }

    RowLayout {
        Layout.fillWidth: true
        Layout.leftMargin: 10
        spacing: 30

        PlaceDisplayer {
            title: qsTr("Position")

            ValueDisplayer {
                objectName: "positionXDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("X")
                value: ActivePageViewModel.Position.X
                unitVisible: false
                significantNb: 4
                useCustomParserSignificatifNumber: true
                pointSize: 18
            }

            ValueDisplayer {
                objectName: "positionYDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("Y")
                value: ActivePageViewModel.Position.Y
                unitVisible: false
                significantNb: 4
                useCustomParserSignificatifNumber: true
                pointSize: 18
            }

            ValueDisplayer {
                objectName: "positionZDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("Z")
                value: ActivePageViewModel.Position.Z
                unitVisible: false
                significantNb: 4
                useCustomParserSignificatifNumber: true
                pointSize: 18
            }
        }

        PlaceDisplayer {
            title: qsTr("Orientation")

            ValueDisplayer {
                objectName: "orientationRollDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("Roll")
                value: ActivePageViewModel.Orientation.Roll
                unit: Unit.DEGREE
                precision: 2
                pointSize: 18
            }

            ValueDisplayer {
                objectName: "orientationPitchDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("Pitch")
                value: ActivePageViewModel.Orientation.Pitch
                unit: Unit.DEGREE
                precision: 2
                pointSize: 18
            }

            ValueDisplayer {
                objectName: "orientationYawDisplayer"
                Layout.preferredWidth: 100
                label: qsTr("Yaw")
                value: ActivePageViewModel.Orientation.Yaw
                unit: Unit.DEGREE
                precision: 2
                pointSize: 18
            }
        }

        Item {
            Layout.fillWidth: true
        }
    }
}
