// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// A choice that follows an index property of a view model and writes the user's choice back to it. A combo box falls
// to its first entry when its list changes; here the choice stays that of the view model.
KXCComboBox {
    id: choice

    property QtObject viewModel: null
    property string indexProperty: ""
    property var choices: []
    property bool writable: true
    property int restoreMode: Binding.RestoreNone
    // For a list whose first entry takes the place of a choice that it does not have any more.
    property bool fallsBackToFirst: false

    readonly property int viewModelIndex: viewModel !== null ? viewModel[indexProperty] : -1

    function takeChoices() {
        inner.isTaking = true;
        model = choices;
        currentIndex = fallsBackToFirst && viewModelIndex < 0 && count > 0 ? 0 : viewModelIndex;
        inner.isTaking = false;
    }

    Layout.fillWidth: true
    onChoicesChanged: {
        if (inner.isComplete)
            takeChoices();
    }
    onViewModelIndexChanged: {
        if (inner.isComplete)
            currentIndex = viewModelIndex;
    }
    Component.onCompleted: {
        takeChoices();
        inner.isComplete = true;
    }

    QtObject {
        id: inner

        property bool isComplete: false
        property bool isTaking: false
    }

    Binding {
        // The view model may ask the user and refuse: not in the middle of the choice.
        delayed: true
        target: choice.viewModel
        property: choice.indexProperty
        value: choice.currentIndex
        when: choice.writable && inner.isComplete && !inner.isTaking
        restoreMode: choice.restoreMode
    }
}
