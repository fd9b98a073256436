// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// Under what conditions the data of the replay were taken.
ColumnLayout {
    id: information

    property bool isFrequencyMinMaxVisible: false

    readonly property QtObject dataset: ActiveOperation.RecordingManager.DataSet
    readonly property QtObject parameters: dataset.MeasurementParameters
    readonly property bool isKnown: parameters !== null

    function numberText(name) {
        return isKnown ? Utils.intToString(parameters[name]) : "";
    }

    spacing: 3

    KXCLabel {
        text: qsTr("Information:")
        bold: true
    }

    InformationLine {
        objectName: "fileLine"
        label: qsTr("File:")
        value: information.dataset.FilePath
    }

    InformationLine {
        objectName: "dateLine"
        label: qsTr("Date:")
        value: information.dataset.Date
        valueWrapMode: Text.Wrap
    }

    InformationLine {
        objectName: "instrumentLine"
        label: qsTr("Instr.:")
        value: information.dataset.InstrumentName
        valueWrapMode: Text.Wrap
    }

    InformationLine {
        objectName: "unitsLine"
        label: qsTr("Units")
        value: information.isKnown ? Utils.getUnitText(information.parameters.DisplayUnits) : ""
    }

    InformationLine {
        objectName: "rangeLine"
        label: qsTr("Range:")
        value: information.isKnown && information.parameters.AutoRange ? qsTr("Auto") : information.numberText("Range")
    }

    InformationLine {
        objectName: "triggerLine"
        label: qsTr("Trigger:")
        value: information.isKnown ? Utils.getTriggerText(information.parameters.TriggerMode) : ""
    }

    InformationLine {
        objectName: "blockCountLine"
        label: qsTr("Block count:")
        value: ActiveOperation.RecordingManager.NumBlocks
    }

    InformationLine {
        objectName: "blockSizeLine"
        label: qsTr("Block size:")
        value: information.numberText("BlockSize")
    }

    InformationLine {
        objectName: "averagingLine"
        label: qsTr("Averaging:")
        value: information.numberText("Averaging")
    }

    InformationLine {
        objectName: "acquisitionRateLine"
        label: qsTr("Acq. rate:")
        value: information.numberText("AcquisitionRate")
    }

    InformationLine {
        objectName: "displayRateLine"
        label: qsTr("Disp. rate:")
        value: information.numberText("DisplayRate")
    }

    InformationLine {
        objectName: "frequencyMinLine"
        label: qsTr("freq. min:")
        visible: information.isFrequencyMinMaxVisible
        value: information.numberText("FrequencyMin")
    }

    InformationLine {
        objectName: "frequencyMaxLine"
        label: qsTr("freq. max:")
        visible: information.isFrequencyMinMaxVisible
        value: information.numberText("FrequencyMax")
    }
}
