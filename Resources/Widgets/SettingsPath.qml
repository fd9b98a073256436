// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "../Controls"
import "../Utils/KeyboardFocus.js" as KeyboardFocus

// All settings in one column. Paths, memory and updates go through the page's view model and take effect after a
// restart; the others are those of the running program.
ScrollView {
    id: settings

    readonly property int comboBoxWidth: 200
    readonly property Item focusItem: Window.activeFocusItem

    onFocusItemChanged: KeyboardFocus.bringIntoView(focusItem, sections, settings.contentItem, settings.availableHeight)
    clip: true
    contentWidth: availableWidth
    ScrollBar.vertical.policy: ScrollBar.AlwaysOn
    ScrollBar.horizontal.policy: ScrollBar.AlwaysOff

    ColumnLayout {
        id: sections

        width: Math.min(settings.availableWidth - 10, 600)
        spacing: 20

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("File Paths")

            FolderSelector {
                objectName: "parameterPathSelector"
                Layout.fillWidth: true
                label: qsTr("Location of instrument parameters")
                value: SettingsPageViewModel.InstrumentParameterPathShort
                toolTipText: SettingsPageViewModel.InstrumentParameterPath
                onFolderPathChanged: {
                    if (folderPath === "")
                        return;
                    SettingsPageViewModel.InstrumentParameterPath = folderPath;
                    // The same folder can be chosen again, after the defaults have been restored.
                    folderPath = "";
                }
            }

            FolderSelector {
                objectName: "storagePathSelector"
                Layout.fillWidth: true
                label: qsTr("Default storage location")
                value: SettingsPageViewModel.DefaultStoragePathShort
                toolTipText: SettingsPageViewModel.DefaultStoragePath
                onFolderPathChanged: {
                    if (folderPath === "")
                        return;
                    SettingsPageViewModel.DefaultStoragePath = folderPath;
                    // The same folder can be chosen again, after the defaults have been restored.
                    folderPath = "";
                }
            }

            KXCCheckBox {
                objectName: "saveCsv"
                label: qsTr("Save recordings in CSV format")
                checked: SettingsPageViewModel.SaveRecordingsAsCsv
                onCheckedChanged: SettingsPageViewModel.SaveRecordingsAsCsv = checked
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Software update")

            KXCCheckBox {
                objectName: "checkForUpdates"
                label: qsTr("Automatically check for updates")
                checked: SettingsPageViewModel.CheckForNewVersion
                onCheckedChanged: SettingsPageViewModel.CheckForNewVersion = checked
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Memory utilization")

            SettingsField {
                objectName: "logLinesField"
                label: qsTr("Lines in log")
                integerValueField: true
                value: SettingsPageViewModel.LogMaxHistoryCount
                onEdited: ActivePageViewModel.LogMaxHistoryCount = number
            }

            SettingsField {
                objectName: "mappingPointsField"
                label: qsTr("Points in Mapping mode")
                integerValueField: true
                value: SettingsPageViewModel.MappingMaxMeasurementCount
                onEdited: ActivePageViewModel.MappingMaxMeasurementCount = number
            }

            SettingsField {
                objectName: "measurementPointsField"
                label: qsTr("Points in other modes")
                integerValueField: true
                value: SettingsPageViewModel.MeasurementMaxMeasurementCount
                onEdited: ActivePageViewModel.MeasurementMaxMeasurementCount = number
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Enabled modes")

            KXCCheckBox {
                objectName: "enableMeter"
                label: qsTr("Meter")
                checked: Settings.EnableMeterMode
                onCheckedChanged: Settings.EnableMeterMode = checked
            }

            KXCCheckBox {
                objectName: "enableSpectrum"
                label: qsTr("Spectrum")
                checked: Settings.EnableSpectrumMode
                onCheckedChanged: Settings.EnableSpectrumMode = checked
            }

            KXCCheckBox {
                objectName: "enableAcAnalysis"
                label: qsTr("AC Analysis")
                checked: Settings.EnableAcAnalysisMode
                onCheckedChanged: Settings.EnableAcAnalysisMode = checked
            }

            KXCCheckBox {
                objectName: "enableMapping"
                label: qsTr("Mapping")
                checked: Settings.EnableMappingMode
                onCheckedChanged: Settings.EnableMappingMode = checked
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Meter 3D Plot Options")
            visible: Settings.EnableMeterMode

            KXCComboBox {
                objectName: "meterCamera"
                text: qsTr("Camera position")
                comboboxWidth: settings.comboBoxWidth
                model: Settings.CameraPresetNames
                currentIndex: Settings.Meter3DCameraPreset
                onActivated: Settings.Meter3DCameraPreset = index
            }

            SettingsField {
                objectName: "meterZoomField"
                label: qsTr("Zoom")
                value: Settings.Meter3DZoomLevel
                onEdited: Settings.Meter3DZoomLevel = number
            }

            KXCCheckBox {
                objectName: "meterOrtho"
                label: qsTr("Ortho projection")
                checked: Settings.Meter3DOrthoProjection
                onCheckedChanged: Settings.Meter3DOrthoProjection = checked
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Mapping 2D Plot Options")
            visible: Settings.EnableMappingMode

            KXCComboBox {
                objectName: "mappingAxis"
                text: qsTr("X-axis represents:")
                comboboxWidth: settings.comboBoxWidth
                model: Settings.XAxisTypeNames
                currentIndex: Settings.Mapping2DPlotHorizontalAxisType
                onActivated: Settings.Mapping2DPlotHorizontalAxisType = index
            }
        }

        KXCSettingsSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
            title: qsTr("Mapping 3D Plot Options")
            visible: Settings.EnableMappingMode

            KXCComboBox {
                objectName: "mappingCamera"
                text: qsTr("Camera position")
                comboboxWidth: settings.comboBoxWidth
                model: Settings.CameraPresetNames
                currentIndex: Settings.Mapping3DCameraPreset
                onActivated: Settings.Mapping3DCameraPreset = index
            }

            SettingsField {
                objectName: "mappingZoomField"
                label: qsTr("Zoom")
                value: Settings.Mapping3DZoomLevel
                // What is typed here is the zoom of the meter, on purpose.
                onEdited: Settings.Meter3DZoomLevel = number
            }

            KXCCheckBox {
                objectName: "mappingOrtho"
                label: qsTr("Ortho projection")
                checked: Settings.Mapping3DOrthoProjection
                onCheckedChanged: Settings.Mapping3DOrthoProjection = checked
            }
        }

        AboutSection {
            Layout.fillWidth: true
            Layout.maximumWidth: 600
        }
    }
}
