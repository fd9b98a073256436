// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// Speed and range of a replay, and under what conditions the data were taken.
ParametersBox {
    id: box

    property bool isFrequencyMinMaxVisible: false

    readonly property QtObject viewModel: ActivePageViewModel.ReplayParametersViewModel
    readonly property QtObject manager: ActiveOperation.RecordingManager
    readonly property bool isChoosing: !manager.IsPlayingBack

    objectName: "replayBox"
    title: qsTr("Replay")
    visible: manager.IsIdleWithData || manager.IsPlayingBack

    ParametersComboBox {
        objectName: "timeWarpComboBox"
        text: qsTr("Time warp")
        comboboxWidth: 100
        enabled: box.isChoosing
        viewModel: box.viewModel
        choices: box.viewModel.TimeWarpNames
        indexProperty: "SelectedTimeWarpIndex"
    }

    BlockNumberField {
        objectName: "startingBlockField"
        label: qsTr("Starting block")
        enabled: box.isChoosing
        numBlocks: box.viewModel.NumBlocks
        value: box.viewModel.StartingBlock
        onEdited: box.viewModel.StartingBlock = number
    }

    BlockNumberField {
        objectName: "endingBlockField"
        label: qsTr("Ending block")
        enabled: box.isChoosing
        numBlocks: box.viewModel.NumBlocks
        value: box.viewModel.EndingBlock
        onEdited: box.viewModel.EndingBlock = number
    }

    BlockNumberField {
        objectName: "currentBlockField"
        label: qsTr("Current block")
        enabled: box.isChoosing
        numBlocks: box.viewModel.NumBlocks
        value: box.viewModel.CurrentBlock
        onEdited: {
            const isInRange = rangeValid;
            box.viewModel.CurrentBlock = number;
            if (isInRange)
                box.manager.playCurrentBlock(number);
        }
    }

    KXCCheckBox {
        id: stepByStep

        objectName: "stepByStepCheckBox"
        Layout.fillWidth: true
        label: qsTr("Step-by-step mode")
        enabled: box.isChoosing
        checked: box.viewModel.StepByStepMode
    }

    Binding {
        target: box.viewModel
        property: "StepByStepMode"
        value: stepByStep.checked
        restoreMode: Binding.RestoreNone
    }

    Spacer {
    }

    ReplayInformation {
        objectName: "replayInformation"
        Layout.fillWidth: true
        isFrequencyMinMaxVisible: box.isFrequencyMinMaxVisible
    }
}
