// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Dialogs 1.3

// A read-only field with a button that chooses a file.
PathSelector {
    id: selector

    property string filePath: ""
    property string fileName: ""

    // The name is set first: who waits for the path finds both.
    function acceptUrl(url) {
        const path = localPath(url);
        fileName = Utils.fileNameFromPath(path);
        filePath = path;
    }

    buttonText: dialog.title
    onChooseRequested: dialog.open()

    FileDialog {
        id: dialog

        title: qsTr("Select a limits file")
        nameFilters: [qsTr("XML format") + " (*.xml)"]
        onAccepted: selector.acceptUrl(fileUrl)
    }
}
