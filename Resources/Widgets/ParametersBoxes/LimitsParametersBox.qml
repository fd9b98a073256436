// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Layouts 1.15
import "../../Controls"

// The file of exposure limits that the field is compared with.
ParametersBox {
    id: box

    readonly property QtObject limits: ActiveOperation.OperationParameters.LimitsParameters
    readonly property string limitsFileName: limits.LimitsFileName

    function forgetChoice() {
        selector.filePath = "";
        selector.fileName = "";
        selector.value = "";
    }

    objectName: "limitsBox"
    title: qsTr("Limits")
    onLimitsFileNameChanged: {
        if (limitsFileName === "")
            forgetChoice();
    }

    FileSelector {
        id: selector

        objectName: "limitsFileSelector"
        Layout.fillWidth: true
        label: qsTr("Limits")
        placeHolderText: box.limitsFileName
        toolTipText: box.limitsFileName
        onFilePathChanged: {
            if (filePath === "")
                return;
            const path = filePath;
            box.limits.LimitsFileName = fileName;
            value = fileName;
            // A file that was refused has left its path behind: chosen once more it is read once more.
            if (box.limits.LimitsFilePath === path)
                box.limits.LimitsFilePath = "";
            box.limits.LimitsFilePath = path;
            console.log("Newlimits file charged : " + path);
        }
    }

    ParametersBoxButton {
        objectName: "clearLimitsButton"
        Layout.alignment: Qt.AlignRight
        text: qsTr("Clear")
        onClicked: {
            console.log("Clear limits on 2D plot");
            ActiveOperation.clearLimitsFile();
            box.forgetChoice();
        }
    }
}
