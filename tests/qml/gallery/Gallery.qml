// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import "qrc:/Resources/Controls"
import "qrc:/Resources/Controls/MeasurementsTable"
import "qrc:/Resources/Utils/Style.js" as Style
import "qrc:/Resources/Widgets"
import "qrc:/Resources/Widgets/ParametersBoxes"

Rectangle {
    id: gallery

    readonly property string images: "qrc:/Resources/Images/"
    readonly property var ranges: [
        {
            "first": "Auto",
            "second": ""
        },
        {
            "first": "0.1",
            "second": "[T]"
        },
        {
            "first": "1.5",
            "second": "[T]"
        }
    ]

    implicitWidth: 1240
    implicitHeight: 860
    color: Style.BackgroundColor
    ToolTip.toolTip.font.family: Style.LetterFontFamily
    ToolTip.toolTip.font.pointSize: Style.ToolTipTextFontSize
    ToolTip.toolTip.palette.toolTipBase: Style.ToolTipBackgroundColor
    ToolTip.toolTip.palette.toolTipText: Style.TextDarkColor
    ToolTip.toolTip.palette.dark: Style.BordersColor

    RowLayout {
        anchors.fill: parent
        anchors.margins: 10
        spacing: 20

        ColumnLayout {
            Layout.alignment: Qt.AlignTop
            Layout.preferredWidth: 480
            spacing: 12

            RowLayout {
                spacing: 5

                ActionButton {
                    text: "Resume"
                    imageSource: gallery.images + "Play.svg"
                }

                ActionButton {
                    text: "Zero-offset"
                    imageSource: gallery.images + "ZeroOffset.svg"
                    enabled: false
                }

                ActionButton {
                    text: "Record"
                    imageSource: gallery.images + "Record.svg"
                    down: true
                }
            }

            RowLayout {
                TextButton {
                    text: "Save"
                }

                TextButton {
                    text: "Connect"
                    light: true
                    Layout.preferredHeight: Style.TextButtonHeight
                }

                TextButton {
                    text: "Disconnect"
                    down: true
                    Layout.preferredHeight: Style.TextButtonHeight
                }

                TextButton {
                    text: "Disabled"
                    enabled: false
                    Layout.preferredHeight: Style.TextButtonHeight
                }
            }

            RowLayout {
                spacing: 5

                GraphToolButton {
                    label: "Zoom in"
                    imageSource: gallery.images + "ZoomIn.svg"
                }

                GraphToolButton {
                    label: "Zoom reset"
                    imageSource: gallery.images + "ZoomReset.svg"
                    enabled: false
                }

                GraphToolButton {
                    label: "Pressed"
                    imageSource: gallery.images + "AutoScaling.svg"
                    down: true
                }

                StatusBarButton {
                    toolTipText: "Help"
                    imageSource: gallery.images + "Help.svg"
                }

                StatusBarButton {
                    toolTipText: "Instrument selection"
                    imageSource: gallery.images + "Connexion.svg"
                    sourceSize: 30
                    down: true
                }

                ParametersBoxButton {
                    text: "Default"
                }

                ParametersBoxButton {
                    text: "Clear"
                    enabled: false
                }
            }

            TabBar {
                background: Rectangle {
                    color: Style.BackgroundColor
                }

                KXCTabButton {
                    text: "Component"
                }

                KXCTabButton {
                    text: "2D Plot"
                }

                KXCTabButton {
                    text: "Table"
                    light: true
                    checked: true
                    autoExclusive: false
                }
            }

            ValueUncertaintyDisplayer {
                label: "B"
                value: 48.85612
                unit: Unit.MICRO_TESLA
                uncertainty: 0.01
                uncertaintyUnit: Unit.MICRO_TESLA
                pointSize: 24
                useCustomParserSignificatifNumber: true
            }

            RowValueDisplayer {
                label: "Maximum :"
                value: 49.123
                unit: Unit.MICRO_TESLA
                useCustomParserSignificatifNumber: true
            }

            RowLayout {
                spacing: 40

                ValueDisplayer {
                    label: "Bx"
                    value: -12.34567
                    unit: Unit.MICRO_TESLA
                    pointSize: 18
                    useCustomParserSignificatifNumber: true
                }

                ColumnValueDisplayer {
                    label: "Maximum :"
                    value: NaN
                    displayValue: false
                    unit: Unit.KILO_AMPERE_PER_METER
                }

                ValueDisplayer {
                    label: "By"
                    value: 123456.7
                    unit: Unit.MEGA_HERTZ_PROTON
                    useCustomParserSignificatifNumber: true
                }
            }

            LabelDisplayer {
                label: " Block :  "
                value: "12"
            }

            LabelDisplayer {
                label: "Serial number"
                value: "KX-0042"
            }

            KXCSettingsSection {
                Layout.fillWidth: true
                title: "Memory utilization"

                KXCCheckBox {
                    label: "Save recordings in CSV format"
                    checked: true
                }

                KXCCheckBox {
                    id: focusedCheckBox

                    label: "Override warnings"
                }

                KXCCheckBox {
                    label: "Disabled"
                    enabled: false
                    checked: true
                }

                KXCComboBox {
                    text: "Default instrument"
                    comboboxWidth: 200
                    model: ["Simulated field instrument KX-0001", "None"]
                }

                FileSelector {
                    Layout.fillWidth: true
                    label: "Limits"
                    placeHolderText: "No file"
                }

                FolderSelector {
                    Layout.fillWidth: true
                    label: "Default storage location"
                    value: "/home/user/Documents/Recordings"
                }
            }
        }

        ColumnLayout {
            Layout.fillWidth: true
            Layout.fillHeight: true
            spacing: 10

            KXCTitle {
                Layout.fillWidth: true
                title: "Results"
                imageSource: gallery.images + "Save.svg"
            }

            MeasurementsTable {
                Layout.fillWidth: true
                Layout.fillHeight: true
                model: TestSupport.resultsModel(40)
                unit: Unit.MICRO_TESLA
                uncertaintyUnit: Unit.PERCENT
                isCommentVisible: true
                comment: "at the window, door closed"
            }

            RowLayout {
                spacing: 0

                MenuButton {
                    text: "Meter"
                    imageSource: gallery.images + "Menu/Meter.svg"
                    isCurrent: true
                }

                MenuButton {
                    text: "Spectrum"
                    imageSource: gallery.images + "Menu/Spectrum.svg"
                }

                ColumnLayout {
                    spacing: 0

                    SmallMenuButton {
                        text: "Menu"
                        imageSource: gallery.images + "Menu/Menu.svg"
                        imageSize: 30
                        imageLeftMargin: 15
                        isExpanded: true
                    }

                    SmallMenuButton {
                        text: "Meter"
                        imageSource: gallery.images + "Menu/Meter.svg"
                    }
                }
            }
        }

        ParametersPanel {
            Layout.preferredWidth: Style.ParametersPanelWidth
            Layout.fillHeight: true

            ParametersBox {
                title: "Measurement"

                KXCComboBox {
                    text: "Units"
                    Layout.fillWidth: true
                    model: ["µT", "mT"]
                }

                KXCComboBox {
                    id: rangeBox

                    objectName: "rangeBox"
                    text: "Range"
                    Layout.fillWidth: true
                    unitVisible: true
                    model: gallery.ranges
                    currentIndex: 1
                }

                KXCComboBox {
                    text: "Trigger"
                    Layout.fillWidth: true
                    enabled: false
                    model: ["Continuous"]
                }

                KXCValueField {
                    label: "Acquisition Rate"
                    Layout.fillWidth: true
                    value: 20
                    unit: Unit.HZ
                }

                KXCValueField {
                    id: focusedField

                    label: "Display Rate"
                    Layout.fillWidth: true
                    value: 12.5
                    precision: 3
                    unit: Unit.HZ
                }

                KXCValueField {
                    label: "Block size"
                    Layout.fillWidth: true
                    value: 0
                    integerValueField: true
                }

                KXCValueField {
                    label: "Averaging"
                    Layout.fillWidth: true
                    value: 10
                    integerValueField: true
                    enabled: false
                }

                KXCValueField {
                    label: "Hidden value"
                    Layout.fillWidth: true
                    fieldVisibility: false
                }

                KXCValueField {
                    Layout.fillWidth: true
                    value: 3.25
                }

                Spacer {
                }

                ParametersBoxButton {
                    text: "Default"
                    Layout.alignment: Qt.AlignRight
                }
            }

            ParametersBox {
                title: "Alarm"
                expanded: false
            }

            ParametersBox {
                title: "Save/Load params."
                childrenEnabled: false

                ParametersBoxButton {
                    text: "Load"
                }
            }
        }
    }

    Component.onCompleted: focusedField.children[0].forceActiveFocus(Qt.TabFocusReason)
}
