// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Layouts 1.15
import QtQuick.Shapes 1.15
import ".."
import "../../Utils/Style.js" as Style

// The gauge of the probe axis: a triangle from the middle line, to the right for a field along the axis, to the left
// for one against it. Its tip tells how much of the field lies along the axis, its base how little lies across.
ColumnLayout {
    id: compas

    readonly property var viewModel: ActivePageViewModel
    property bool completed: false
    property bool isCleared: true

    // Handlers cannot be written for signals whose names begin with a capital; a property that follows has its own.
    readonly property bool isRightDue: viewModel.UpdateRightCompas
    readonly property bool isLeftDue: viewModel.UpdateLeftCompas
    readonly property bool isClearDue: viewModel.ClearCompas
    readonly property int selectedProbeAxis: viewModel.SelectedProbeAxisIndex
    readonly property int selectedMode: viewModel.SelectedModeIndex

    // The selection falls back without a signal when a measurement is let go of.
    function takeSelection() {
        probeAxisChoice.currentIndex = viewModel.SelectedProbeAxisIndex;
        modeChoice.currentIndex = viewModel.SelectedModeIndex;
    }

    function drawRight() {
        const height = rightSide.height;
        const base = viewModel.CompasHeight * height;
        const top = (height - base) / 2;
        leftSide.isShown = false;
        rightSide.isShown = true;
        rightSide.draw(Qt.point(0, top), [Qt.point(viewModel.CompasWidth * rightSide.width, height / 2),
                                          Qt.point(0, height - top), Qt.point(0, top - 1)]);
    }

    function drawLeft() {
        const width = leftSide.width;
        const height = leftSide.height;
        const base = viewModel.CompasHeight * height;
        const top = (height - base) / 2;
        rightSide.isShown = false;
        leftSide.isShown = true;
        leftSide.draw(Qt.point(width, top), [Qt.point(width - viewModel.CompasWidth * width, height / 2),
                                             Qt.point(width, height - top), Qt.point(width, top - 1)]);
    }

    function clear() {
        isCleared = true;
        leftSide.draw(Qt.point(0, 0), [Qt.point(0, 0)]);
        rightSide.draw(Qt.point(0, 0), [Qt.point(0, 0)]);
    }

    function redraw() {
        if (!completed || isCleared)
            return;
        if (viewModel.UpdateRightCompas)
            drawRight();
        else if (viewModel.UpdateLeftCompas)
            drawLeft();
    }

    // A field that is not a number has no direction.
    function update() {
        isCleared = false;
        if (isFinite(viewModel.CompasWidth + viewModel.CompasHeight))
            redraw();
        else
            clear();
    }

    objectName: "meterCompas"
    spacing: 2

    onIsRightDueChanged: {
        if (isRightDue && completed)
            update();
    }
    onIsLeftDueChanged: {
        if (isLeftDue && completed)
            update();
    }
    onIsClearDueChanged: {
        if (isClearDue && completed) {
            clear();
            takeSelection();
        }
    }
    onSelectedProbeAxisChanged: takeSelection()
    onSelectedModeChanged: takeSelection()

    Component.onCompleted: {
        takeSelection();
        completed = true;
        // The view model's triangle outlives its field.
        const isNullField = viewModel.SelectedModeIndex === 0 && viewModel.BLastBlock === 0;
        if (ActiveOperation.RecordingManager.NumBlocks > 0 && !isNullField)
            update();
        else
            clear();
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: 0

        MeterCompasSide {
            id: leftSide

            objectName: "compasLeftSide"
            Layout.fillWidth: true
            Layout.preferredHeight: 75
            onWidthChanged: compas.redraw()
        }

        Rectangle {
            Layout.preferredWidth: Style.BorderWidth
            Layout.preferredHeight: 75
            color: Style.BordersColor
        }

        MeterCompasSide {
            id: rightSide

            objectName: "compasRightSide"
            Layout.fillWidth: true
            Layout.preferredHeight: 75
            onWidthChanged: compas.redraw()
        }
    }

    Item {
        Layout.fillWidth: true
        implicitHeight: zeroLegend.implicitHeight

        KXCLabel {
            anchors.left: parent.left
            text: qsTr("-100%")
        }

        KXCLabel {
            id: zeroLegend

            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("0")
        }

        KXCLabel {
            anchors.right: parent.right
            text: qsTr("100%")
        }
    }

    KXCComboBox {
        id: probeAxisChoice

        objectName: "probeAxisChoice"
        Layout.fillWidth: true
        text: qsTr("Probe axis")
        legendPointSize: 10
        model: compas.viewModel.ProbeAxisNames
    }

    KXCComboBox {
        id: modeChoice

        objectName: "compasModeChoice"
        Layout.fillWidth: true
        text: qsTr("Mode")
        legendPointSize: 10
        model: compas.viewModel.ModeNames
    }

    Item {
        Layout.fillHeight: true
    }

    Binding {
        target: ActivePageViewModel
        property: "SelectedProbeAxisIndex"
        value: probeAxisChoice.currentIndex
        when: compas.completed
        restoreMode: Binding.RestoreNone
    }

    Binding {
        target: ActivePageViewModel
        property: "SelectedModeIndex"
        value: modeChoice.currentIndex
        when: compas.completed
        restoreMode: Binding.RestoreNone
    }
}
