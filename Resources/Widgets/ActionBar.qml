// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15

// Commands of an operation page, given as children. The functions decide from the state of the recording manager and
// the instrument which of them can be given.
Row {
    id: actionBar

    // What dialogs are centred on.
    property var mainWindow: null

    readonly property var instrument: ActiveOperation.Instrument
    readonly property bool isConnected: instrument !== null
    readonly property var manager: ActiveOperation.RecordingManager

    function buttonResumeMeasurementVisible() {
        if (!isConnected || instrument.IsRunning || manager.IsIdleWithData)
            return false;
        if (manager.IsPlayingBack)
            return manager.IsHolding;
        if (manager.IsRecording)
            return !instrument.IsRunning;
        return true;
    }

    function buttonResumeMappingVisible() {
        if (manager.IsPlayingBack)
            return manager.IsHolding;
        return isConnected && !ActiveOperation.SessionInProgress && !manager.IsIdleWithData;
    }

    function buttonHoldMappingVisible() {
        return manager.IsPlayingBack && !manager.IsHolding && !manager.ReplayStepByStep;
    }

    function buttonLoadMappingVisible() {
        return !manager.IsPlayingBack && !ActiveOperation.SessionInProgress;
    }

    function isHoldPossible() {
        if (manager.IsPlayingBack)
            return !manager.IsHolding && !manager.ReplayStepByStep;
        return manager.IsRecording && isConnected && instrument.IsRunning;
    }

    function buttonHoldVisible() {
        if (!isConnected)
            return manager.IsIdleWithData && isHoldPossible();
        return instrument.IsRunning || isHoldPossible();
    }

    function buttonRecordVisible() {
        return isConnected && !manager.IsPlayingBack && !manager.IsRecording && !manager.IsIdleWithData;
    }

    function buttonPlaybackVisible() {
        return !manager.IsPlayingBack && manager.IsIdleWithData;
    }

    function buttonStopVisible() {
        return manager.IsPlayingBack || manager.IsRecording;
    }

    function buttonEndVisible() {
        return manager.IsIdleWithData && (isConnected || !manager.IsPlayingBack);
    }

    function buttonLoadVisible() {
        return !manager.IsPlayingBack && !manager.IsIdleWithData && !(isConnected && instrument.IsRunning);
    }

    function buttonSaveVisible() {
        return isConnected && manager.IsIdleWithData && !manager.IsDataLoaded;
    }

    function buttonZeroOffsetVisible() {
        return isConnected && !manager.IsIdleWithData && !manager.IsPlayingBack;
    }

    function buttonStepVisible() {
        return manager.IsPlayingBack && manager.ReplayStepByStep;
    }

    spacing: 5
}
