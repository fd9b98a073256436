// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import Kestrix.CUnit 1.0
import "../../Controls"

// What moves the probe, and to which places: those of a grid or of a file. A mover that does not stop sets its own
// path.
ParametersBox {
    id: box

    readonly property bool valid: xStartField.valid && xStopField.valid && xStepField.valid && yStartField.valid && yStopField.valid && yStepField.valid && zStartField.valid && zStopField.valid && zStepField.valid && rollField.valid && pitchField.valid && yawField.valid

    readonly property QtObject viewModel: ActivePageViewModel.MappingParametersViewModel
    readonly property QtObject manager: ActiveOperation.RecordingManager
    readonly property QtObject grid: ActiveOperation.MappingParameters.MapperSourceCartesian
    readonly property QtObject fileSource: ActiveOperation.MappingParameters.MapperSourceFile

    objectName: "mappingBox"
    title: qsTr("Mapping")
    visible: !manager.IsIdleWithData && !manager.IsPlayingBack
    childrenEnabled: !ActiveOperation.SessionInProgress

    component GridField: ParameterField {
        Layout.preferredWidth: 55
        significantNb: 4
        minValue: Number.NEGATIVE_INFINITY
        maxValue: Number.POSITIVE_INFINITY
    }

    component AngleField: ParameterField {
        Layout.preferredWidth: 55
        unit: Unit.DEGREE
        precision: 2
        minValue: -360.0
        maxValue: 360.0
    }

    ParametersComboBox {
        objectName: "mapperComboBox"
        text: qsTr("Mapper")
        viewModel: box.viewModel
        choices: box.viewModel.Mappers
        indexProperty: "SelectedMapperIndex"
    }

    ParametersComboBox {
        objectName: "sourceComboBox"
        text: qsTr("Source")
        visible: !box.viewModel.IsMapperOnTheFly
        viewModel: box.viewModel
        choices: box.viewModel.Sources
        indexProperty: "SelectedSourceIndex"
    }

    GridLayout {
        Layout.fillWidth: true
        visible: box.viewModel.IsCartesianSource && !box.viewModel.IsMapperOnTheFly
        columns: 3
        columnSpacing: 5
        rowSpacing: 5

        GridField {
            id: xStartField

            objectName: "xStartField"
            label: qsTr("X start")
            value: box.grid.X.Start
            onEdited: box.grid.X.Start = number
        }

        GridField {
            id: xStopField

            objectName: "xStopField"
            label: qsTr("X stop")
            value: box.grid.X.Stop
            onEdited: box.grid.X.Stop = number
        }

        GridField {
            id: xStepField

            objectName: "xStepField"
            label: qsTr("X step")
            value: box.grid.X.StepSize
            onEdited: box.grid.X.StepSize = number
        }

        GridField {
            id: yStartField

            objectName: "yStartField"
            label: qsTr("Y start")
            value: box.grid.Y.Start
            onEdited: box.grid.Y.Start = number
        }

        GridField {
            id: yStopField

            objectName: "yStopField"
            label: qsTr("Y stop")
            value: box.grid.Y.Stop
            onEdited: box.grid.Y.Stop = number
        }

        GridField {
            id: yStepField

            objectName: "yStepField"
            label: qsTr("Y step")
            value: box.grid.Y.StepSize
            onEdited: box.grid.Y.StepSize = number
        }

        GridField {
            id: zStartField

            objectName: "zStartField"
            label: qsTr("Z start")
            value: box.grid.Z.Start
            onEdited: box.grid.Z.Start = number
        }

        GridField {
            id: zStopField

            objectName: "zStopField"
            label: qsTr("Z stop")
            value: box.grid.Z.Stop
            onEdited: box.grid.Z.Stop = number
        }

        GridField {
            id: zStepField

            objectName: "zStepField"
            label: qsTr("Z step")
            value: box.grid.Z.StepSize
            onEdited: box.grid.Z.StepSize = number
        }

        AngleField {
            id: rollField

            objectName: "rollField"
            label: qsTr("Roll")
            value: box.grid.Orientation.Roll
            onEdited: box.grid.Orientation.Roll = number
        }

        AngleField {
            id: pitchField

            objectName: "pitchField"
            label: qsTr("Pitch")
            value: box.grid.Orientation.Pitch
            onEdited: box.grid.Orientation.Pitch = number
        }

        AngleField {
            id: yawField

            objectName: "yawField"
            label: qsTr("Yaw")
            value: box.grid.Orientation.Yaw
            onEdited: box.grid.Orientation.Yaw = number
        }
    }

    FileSelector {
        id: selector

        objectName: "mappingFileSelector"
        Layout.fillWidth: true
        visible: !box.viewModel.IsCartesianSource && !box.viewModel.IsMapperOnTheFly
        label: qsTr("Mapping file")
        placeHolderText: box.fileSource.MappingFile.FileName
        onFilePathChanged: {
            if (filePath === "")
                return;
            box.fileSource.MappingFile.FilePath = filePath;
            box.fileSource.loadMappingFile();
            if (box.fileSource.MappingFile.FileError) {
                fileName = "";
                filePath = "";
            } else {
                box.fileSource.MappingFile.FileName = fileName;
            }
        }
    }
}
