// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQml 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtGraphicalEffects 1.15
import Kestrix.CLogMessage 1.0
import "../Controls"
import "../Utils/Style.js" as Style

// The log list, with a search text and a minimum level.
Dialog {
    id: logDialog

    // Widths of the widest row so far, so that the columns of all rows line up.
    property real levelColumnWidth: 0
    property real timestampColumnWidth: 0

    function levelText(level) {
        switch (level) {
        case LogMessageLevel.DEBUG:
            return qsTr("Debug");
        case LogMessageLevel.WARNING:
            return qsTr("Warning");
        case LogMessageLevel.CRITICAL:
            return qsTr("Critical");
        case LogMessageLevel.FATAL:
            return qsTr("Fatal");
        default:
            return qsTr("Info");
        }
    }

    function levelBackground(level) {
        switch (level) {
        case LogMessageLevel.INFO:
            return "#DCDCDC";
        case LogMessageLevel.WARNING:
            return "#D3D3D3";
        case LogMessageLevel.CRITICAL:
            return "#C0C0C0";
        case LogMessageLevel.FATAL:
            return "#A9A9A9";
        default:
            return "white";
        }
    }

    function levelImage(level) {
        if (level === LogMessageLevel.DEBUG || level === LogMessageLevel.INFO)
            return "qrc:///Resources/Images/Info.svg";
        return level === LogMessageLevel.WARNING ? "qrc:///Resources/Images/Warning.svg" : "qrc:///Resources/Images/Error.svg";
    }

    function levelColor(level) {
        switch (level) {
        case LogMessageLevel.DEBUG:
            return "gray";
        case LogMessageLevel.INFO:
            return "black";
        case LogMessageLevel.WARNING:
            return "yellow";
        default:
            return "red";
        }
    }

    objectName: "logDialog"
    title: qsTr("Log messages")
    modal: true
    focus: true
    width: 800
    height: 500
    closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside
    font.family: Style.LetterFontFamily
    onOpened: {
        messageList.positionViewAtEnd();
        searchField.forceActiveFocus();
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 10

        RowLayout {
            Layout.fillWidth: true
            spacing: 10

            KXCLabel {
                text: qsTr("Search")
            }

            TextField {
                id: searchField

                objectName: "logSearchField"
                Layout.fillWidth: true
                Layout.preferredHeight: 30
                leftPadding: 6
                rightPadding: 6
                topPadding: 2
                bottomPadding: 2
                verticalAlignment: TextInput.AlignVCenter
                selectByMouse: true
                selectionColor: Style.TextFieldFocusBorder
                selectedTextColor: Style.BackgroundColor
                font.family: Style.LetterFontFamily
                font.pointSize: 9
                color: Style.TextDarkColor
                Accessible.name: qsTr("Search")
                onTextChanged: MainViewModel.LogMessageProxy.setFilterString(text)

                background: Rectangle {
                    color: Style.BackgroundColor
                    border.width: searchField.activeFocus ? 2 : 1
                    border.color: searchField.activeFocus ? Style.TextFieldFocusBorder : Style.BordersColor
                }
            }

            KXCComboBox {
                id: levelBox

                objectName: "logLevelBox"
                // The search field has the width that is left.
                Layout.fillWidth: false
                text: qsTr("Min log level")
                model: [qsTr("Debug"), qsTr("Info"), qsTr("Warning"), qsTr("Critical"), qsTr("Fatal")]
                currentIndex: MainViewModel.LogMessageProxy.MinLevel
            }

            Binding {
                target: MainViewModel.LogMessageProxy
                property: "MinLevel"
                value: levelBox.currentIndex
                restoreMode: Binding.RestoreNone
            }
        }

        ListView {
            id: messageList

            objectName: "logMessageList"
            Layout.fillWidth: true
            Layout.fillHeight: true
            clip: true
            model: MainViewModel.LogMessageProxy
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            Accessible.role: Accessible.List
            Accessible.name: qsTr("Log messages")
            // The keys scroll: there is nothing to choose in the list.
            currentIndex: -1
            keyNavigationEnabled: false
            Keys.onUpPressed: scrollBy(-20)
            Keys.onDownPressed: scrollBy(20)
            Keys.onPressed: {
                event.accepted = true;
                if (event.key === Qt.Key_PageUp)
                    scrollBy(-height);
                else if (event.key === Qt.Key_PageDown)
                    scrollBy(height);
                else if (event.key === Qt.Key_Home)
                    positionViewAtBeginning();
                else if (event.key === Qt.Key_End)
                    positionViewAtEnd();
                else
                    event.accepted = false;
            }

            function scrollBy(distance) {
                contentY = Math.max(originY, Math.min(contentY + distance, originY + contentHeight - height));
            }

            ScrollBar.vertical: ScrollBar {
                policy: ScrollBar.AsNeeded
            }

            Rectangle {
                // Beside the content, which scrolls.
                parent: messageList
                anchors.fill: parent
                z: 1
                color: "transparent"
                border.width: messageList.activeFocus ? 2 : 0
                border.color: Style.TextFieldFocusBorder
            }

            delegate: Rectangle {
                id: row

                objectName: "logRow" + index
                width: messageList.width
                height: Math.max(messageText.implicitHeight, 25) + 6
                color: logDialog.levelBackground(model.level)

                RowLayout {
                    anchors.fill: parent
                    anchors.leftMargin: 5
                    anchors.rightMargin: 15
                    spacing: 10

                    Item {
                        Layout.preferredWidth: 25
                        Layout.preferredHeight: 25

                        Image {
                            id: levelIcon

                            anchors.centerIn: parent
                            source: logDialog.levelImage(model.level)
                            sourceSize: Qt.size(20, 20)
                            visible: false
                        }

                        ColorOverlay {
                            objectName: "logIcon" + index
                            anchors.fill: levelIcon
                            source: levelIcon
                            color: logDialog.levelColor(model.level)
                        }
                    }

                    LogDialogText {
                        objectName: "logLevel" + index
                        Layout.preferredWidth: logDialog.levelColumnWidth
                        text: logDialog.levelText(model.level)
                        onImplicitWidthChanged: logDialog.levelColumnWidth = Math.max(logDialog.levelColumnWidth, implicitWidth)
                        Component.onCompleted: logDialog.levelColumnWidth = Math.max(logDialog.levelColumnWidth, implicitWidth)
                    }

                    LogDialogText {
                        objectName: "logTimestamp" + index
                        Layout.preferredWidth: logDialog.timestampColumnWidth
                        text: model.timestamp
                        onImplicitWidthChanged: logDialog.timestampColumnWidth = Math.max(logDialog.timestampColumnWidth, implicitWidth)
                        Component.onCompleted: logDialog.timestampColumnWidth = Math.max(logDialog.timestampColumnWidth, implicitWidth)
                    }

                    LogDialogText {
                        id: messageText

                        objectName: "logMessage" + index
                        Layout.fillWidth: true
                        text: model.message
                        wrapMode: TextEdit.Wrap
                    }
                }
            }
        }
    }

    footer: Item {
        implicitHeight: 50

        TextButton {
            objectName: "logCloseButton"
            anchors.centerIn: parent
            height: Style.TextButtonHeight
            width: Style.TextButtonWidth
            text: qsTr("Close")
            onClicked: logDialog.close()
        }
    }
}
