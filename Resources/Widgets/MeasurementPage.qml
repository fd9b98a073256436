// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// What the pages of the operations have in common: the commands, the number of the block, the tabs with one view
// at a time, and the boxes of parameters at the right or, in the small layout, in a drawer. Children stand above the
// view.
Item {
    id: page

    default property alias header: headerColumn.data
    property alias tabs: tabBar.contentData
    property alias currentTab: tabBar.currentIndex
    // Whether the numbers of the measurement box allow a measurement.
    property bool isMeasurementValid: true
    property bool stopBeforeEnd: false
    // A map is taken from its start to its end: it is started, never resumed, and only its replay can be held.
    property bool isMapping: false
    property color viewColor: "transparent"
    property int viewMargin: 0

    // Where the boxes of parameters belong at present; there is one set of them, which keeps what is typed and expanded.
    readonly property Item boxArea: MainViewModel.SmallWindowSize ? parametersDrawer.boxArea : parametersPanel.boxArea
    readonly property real boxWidth: Style.ParametersPanelWidth - Style.ParametersScrollBarWidth
    readonly property var manager: ActiveOperation.RecordingManager

    // The view of another tab is about to be built.
    signal tabChanging(int index)

    // A view is always built anew.
    function showTab() {
        const tab = tabBar.currentItem;
        contentLoader.active = false;
        contentLoader.sourceComponent = tab.component;
        ActivePageViewModel.SectionIndex = tab.sectionIndex;
        contentLoader.active = true;
    }

    Component.onCompleted: {
        showTab();
        tabBar.currentIndexChanged.connect(() => {
            page.tabChanging(tabBar.currentIndex);
            page.showTab();
        });
    }

    component EndButton: ActionButton {
        objectName: "endButton"
        text: qsTr("End")
        imageSource: "qrc:///Resources/Images/Cross.svg"
        onClicked: ActivePageViewModel.end()
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
                text: page.isMapping ? qsTr("Start") : qsTr("Resume")
                imageSource: "qrc:///Resources/Images/Play.svg"
                visible: page.isMapping ? actionBar.buttonResumeMappingVisible() : actionBar.buttonResumeMeasurementVisible()
                enabled: page.isMeasurementValid
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
                visible: page.isMapping ? actionBar.buttonHoldMappingVisible() : actionBar.buttonHoldVisible()
                onClicked: ActivePageViewModel.hold()
            }

            ActionButton {
                objectName: "recordButton"
                text: qsTr("Record")
                imageSource: "qrc:///Resources/Images/Record.svg"
                visible: !page.isMapping && actionBar.buttonRecordVisible()
                enabled: page.isMeasurementValid
                onClicked: ActivePageViewModel.record()
            }

            EndButton {
                visible: !page.stopBeforeEnd && actionBar.buttonEndVisible()
            }

            ActionButton {
                objectName: "stopButton"
                text: qsTr("Stop")
                imageSource: "qrc:///Resources/Images/Stop.svg"
                visible: actionBar.buttonStopVisible()
                onClicked: ActivePageViewModel.stop()
            }

            EndButton {
                visible: page.stopBeforeEnd && actionBar.buttonEndVisible()
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
                visible: page.isMapping ? actionBar.buttonLoadMappingVisible() : actionBar.buttonLoadVisible()
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

        ColumnLayout {
            id: headerColumn

            Layout.fillWidth: true
            spacing: 10
        }

        Rectangle {
            Layout.fillWidth: true
            Layout.fillHeight: true
            color: page.viewColor

            Loader {
                id: contentLoader

                objectName: "contentLoader"
                anchors.fill: parent
                anchors.margins: page.viewMargin
            }
        }

        TabBar {
            id: tabBar

            objectName: "tabBar"
            Layout.fillWidth: true
            background: Rectangle {
                color: "white"
            }
        }
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
