// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import "../Controls"
import "../Controls/Chart2D"
import "../Controls/MeasurementsTable"
import "../Controls/Meter"
import "../Utils/Style.js" as Style
import "../Widgets"
import "../Widgets/ParametersBoxes"

Item {
    id: page

    readonly property var manager: ActiveOperation.RecordingManager

    objectName: "meterPage"

    Component {
        id: componentDisplayer

        ComponentDisplayer {
        }
    }

    Component {
        id: measurementsChart2D

        MeasurementsChart2D {
            readonly property QtObject chartData: ActivePageViewModel.MeterOperationDatasetViewModel.Chart2DData

            dataModel: chartData
            verticalAxisLabel: qsTr("Field strength")
            unit: ActivePageViewModel.DisplayUnits
            lengthAxeX: chartData.XTickCount
            xMinTime: chartData.XminTime
            xMinDate: chartData.XminDate
            xMaxTime: chartData.XmaxTime
            xMaxDate: chartData.XmaxDate
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

    ZeroOffsetDialog {
        id: zeroOffsetDialog

        mainWindow: actionBar.mainWindow
    }

    ColumnLayout {
        anchors.fill: parent
        anchors.bottomMargin: 10
        anchors.rightMargin: parametersPanel.visible ? parametersPanel.width + 10 - Style.ParametersScrollBarWidth : 0
        spacing: 10

        ActionBar {
            id: actionBar

            mainWindow: page.ApplicationWindow.window

            ActionButton {
                objectName: "resumeButton"
                text: qsTr("Resume")
                imageSource: "qrc:///Resources/Images/Play.svg"
                visible: actionBar.buttonResumeMeasurementVisible()
                enabled: parametersBoxes.isMeasurementValid
                onClicked: ActivePageViewModel.resume()
            }

            ActionButton {
                objectName: "stepButton"
                text: qsTr("Step")
                imageSource: "qrc:///Resources/Images/Play.svg"
                visible: actionBar.buttonStepVisible()
                onClicked: ActivePageViewModel.step()
            }

            ActionButton {
                objectName: "holdButton"
                text: qsTr("Hold")
                imageSource: "qrc:///Resources/Images/Pause.svg"
                visible: actionBar.buttonHoldVisible()
                onClicked: ActivePageViewModel.hold()
            }

            ActionButton {
                objectName: "recordButton"
                text: qsTr("Record")
                imageSource: "qrc:///Resources/Images/Record.svg"
                visible: actionBar.buttonRecordVisible()
                enabled: parametersBoxes.isMeasurementValid
                onClicked: ActivePageViewModel.record()
            }

            ActionButton {
                objectName: "endButton"
                text: qsTr("End")
                imageSource: "qrc:///Resources/Images/Cross.svg"
                visible: actionBar.buttonEndVisible()
                onClicked: ActivePageViewModel.end()
            }

            ActionButton {
                objectName: "stopButton"
                text: qsTr("Stop")
                imageSource: "qrc:///Resources/Images/Stop.svg"
                visible: actionBar.buttonStopVisible()
                onClicked: ActivePageViewModel.stop()
            }

            ActionButton {
                objectName: "playbackButton"
                text: qsTr("Playback")
                imageSource: "qrc:///Resources/Images/Playback.svg"
                visible: actionBar.buttonPlaybackVisible()
                onClicked: ActivePageViewModel.start()
            }

            ActionButton {
                objectName: "loadButton"
                text: qsTr("Load")
                imageSource: "qrc:///Resources/Images/Load.svg"
                visible: actionBar.buttonLoadVisible()
                onClicked: ActivePageViewModel.load()
            }

            ActionButton {
                objectName: "saveButton"
                text: qsTr("Save")
                imageSource: "qrc:///Resources/Images/Save.svg"
                visible: actionBar.buttonSaveVisible()
                onClicked: ActivePageViewModel.save()
            }

            ActionButton {
                objectName: "zeroOffsetButton"
                text: qsTr("Zero-offset")
                imageSource: "qrc:///Resources/Images/ZeroOffset.svg"
                visible: actionBar.buttonZeroOffsetVisible()
                onClicked: zeroOffsetDialog.open()
            }
        }

        LabelDisplayer {
            objectName: "blockLine"
            Layout.preferredHeight: 20
            label: qsTr(" Block :  ")
            value: page.manager.NumBlocks <= 0 ? "--" : page.manager.ReplayIndex + 1
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
                    visible: tabBar.currentIndex === 0
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
                    visible: tabBar.currentIndex === 0
                }
            }

            Item {
                Layout.fillWidth: true
            }
        }

        Loader {
            id: contentLoader

            objectName: "contentLoader"
            Layout.fillWidth: true
            Layout.fillHeight: true
            sourceComponent: componentDisplayer
        }

        TabBar {
            id: tabBar

            objectName: "meterTabBar"
            Layout.fillWidth: true
            background: Rectangle {
                color: "white"
            }

            // A view is always built anew.
            onCurrentIndexChanged: {
                const tab = currentItem;
                contentLoader.active = false;
                contentLoader.sourceComponent = tab.component;
                ActivePageViewModel.SectionIndex = tab.sectionIndex;
                contentLoader.active = true;
            }

            KXCTabButton {
                readonly property Component component: componentDisplayer
                readonly property int sectionIndex: 0

                objectName: "componentTab"
                text: qsTr("Component")
            }

            KXCTabButton {
                readonly property Component component: measurementsChart2D
                readonly property int sectionIndex: 1

                objectName: "plotTab"
                text: qsTr("2D Plot")
            }

            KXCTabButton {
                readonly property Component component: measurementsTable
                readonly property int sectionIndex: 2

                objectName: "tableTab"
                text: qsTr("Table")
            }
        }
    }

    // One set of boxes, which moves with the layout and keeps what is typed and expanded.
    MeterParametersBoxes {
        id: parametersBoxes

        objectName: "parametersBoxes"
        parent: MainViewModel.SmallWindowSize ? parametersDrawer.boxArea : parametersPanel.boxArea
        width: Style.ParametersPanelWidth - Style.ParametersScrollBarWidth
    }

    ParametersPanel {
        id: parametersPanel

        objectName: "parametersPanel"
        anchors.top: parent.top
        anchors.bottom: parent.bottom
        anchors.right: parent.right
        anchors.rightMargin: -Style.ParametersScrollBarWidth
        width: Style.ParametersPanelWidth
        visible: !MainViewModel.SmallWindowSize
    }

    ParametersDrawer {
        id: parametersDrawer
    }
}
