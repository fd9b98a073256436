// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Dialogs 1.3

// A read-only field with a button that chooses a folder.
PathSelector {
    id: selector

    property string folderPath: ""

    function acceptUrl(url) {
        folderPath = localPath(url);
    }

    buttonText: dialog.title
    onChooseRequested: dialog.open()

    FileDialog {
        id: dialog

        title: qsTr("Select a folder")
        selectFolder: true
        onAccepted: selector.acceptUrl(fileUrl)
    }
}
