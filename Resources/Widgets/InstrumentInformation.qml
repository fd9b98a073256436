// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import "../Controls"
import "../Utils/Style.js" as Style

// Instruments found, the default one, and the facts of the connected one.
ScrollView {
    id: information

    readonly property int factLabelWidth: 150

    clip: true
    contentWidth: availableWidth
    ScrollBar.vertical.policy: ScrollBar.AlwaysOn
    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

    // The call that connects blocks: the detour through the timer lets the button and the pop-up paint first.
    Timer {
        id: connectTimer

        property int instrumentIndex: -1

        interval: 1
        onTriggered: busyPopup.run(() => ConnectionPageViewModel.setActiveInstrument(instrumentIndex))
    }

    BusyPopup {
        id: busyPopup
    }

    ColumnLayout {
        width: Math.min(information.availableWidth - 10, 600)
        spacing: 0

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Instruments found")
            contentSpacing: 5

            Rectangle {
                Layout.fillWidth: true
                Layout.preferredHeight: 250
                color: "#fBfBfB"

                ListView {
                    id: instrumentList

                    objectName: "instrumentList"
                    anchors.fill: parent
                    clip: true
                    boundsBehavior: Flickable.StopAtBounds
                    model: ConnectionPageViewModel.ConnectedInstruments
                    Accessible.role: Accessible.List
                    Accessible.name: qsTr("Instruments found")

                    ScrollBar.vertical: ScrollBar {
                    }

                    delegate: InstrumentRow {
                        width: instrumentList.width - 10
                        isActive: ConnectionPageViewModel.ActiveInstrumentIndex === index
                        onConnectRequested: {
                            connectTimer.instrumentIndex = index;
                            connectTimer.start();
                        }
                        onDisconnectRequested: ConnectionPageViewModel.clearActiveInstrument()
                    }
                }

                KXCLabel {
                    anchors.centerIn: parent
                    width: parent.width - 40
                    horizontalAlignment: Text.AlignHCenter
                    visible: instrumentList.count === 0
                    textColor: Style.TextLightColor
                    text: qsTr("No instrument found. Plug one in, or look into the log for what was loaded.")
                }
            }

            KXCComboBox {
                objectName: "defaultInstrumentBox"
                text: qsTr("Default instrument")
                comboboxWidth: 200
                model: ConnectionPageViewModel.InstrumentNames
                currentIndex: ConnectionPageViewModel.SelectedDefaultInstrumentIndex
                // A new list sets the index to 0. That is not the user's choice, and must not pass for it.
                onModelChanged: currentIndex = Qt.binding(() => ConnectionPageViewModel.SelectedDefaultInstrumentIndex)
                onActivated: ConnectionPageViewModel.SelectedDefaultInstrumentIndex = index
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Instrument information")
            contentSpacing: 5

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Manufacturer")
                value: ConnectionPageViewModel.Manufacturer
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Model")
                value: ConnectionPageViewModel.Model
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Serial number")
                value: ConnectionPageViewModel.SerialNumber
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Electronics version")
                value: ConnectionPageViewModel.ElectronicsVersion
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Firmware version")
                value: ConnectionPageViewModel.FirmwareVersion
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Probe version")
                value: ConnectionPageViewModel.ProbeVersion
            }

            LabelDisplayer {
                labelWidth: information.factLabelWidth
                label: qsTr("Manufacturing date")
                value: ConnectionPageViewModel.ManufacturingDate
            }

            LabelDisplayer {
                objectName: "calibrationDate"
                labelWidth: information.factLabelWidth
                label: qsTr("Calibration date")
                value: ConnectionPageViewModel.CalibrationDate
                valueColor: ConnectionPageViewModel.CalibrationOutOfDate ? "red" : Style.TextDarkColor
            }
        }
    }
}
