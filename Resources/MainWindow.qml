// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 2.15
import QtQuick.Layouts 1.15
import QtQuick.Window 2.15
import "Controls/Chart3D"
import "Utils/Style.js" as Style
import "Widgets"

ApplicationWindow {
    id: mainWindow

    property bool initialize: false
    property int smallSizeOffset: 70
    property int minimumResolutionHeight: 768
    property int minimumResolutionWidth: 1024

    // Bindings and handlers run in no certain order while the window is made: its size counts from here on.
    property bool isComplete: false

    // Pages find it here.
    property alias sceneKeeper: sceneKeeper

    function isSmallWindowSize() {
        if (!initialize) {
            initialize = true;
            if (Screen.desktopAvailableWidth - width >= smallSizeOffset)
                width = minimumWidth + 2 * smallSizeOffset;
            if (Screen.desktopAvailableHeight - height >= smallSizeOffset)
                height = minimumHeight + 2 * smallSizeOffset;
            if (width < minimumResolutionWidth + smallSizeOffset || height < minimumResolutionHeight + smallSizeOffset)
                showMaximized();
        }
        MainViewModel.SmallWindowSize = width <= minimumResolutionWidth;
    }

    objectName: "mainWindow"
    visible: true
    width: minimumResolutionWidth
    height: minimumResolutionHeight
    minimumWidth: minimumResolutionWidth - smallSizeOffset
    minimumHeight: minimumResolutionHeight - smallSizeOffset
    title: OrganizationName + " " + AppName + " v" + Version
    font.family: Style.LetterFontFamily
    // All else has sizes of its own. Titles and check boxes would grow with the desktop's font, and their places do not;
    // the desktop's scale makes everything larger.
    font.pointSize: 9

    onClosing: close.accepted = MainViewModel.exitApplicationAllowed()
    onHeightChanged: MainViewModel.MainWindowHeight = height
    onWidthChanged: {
        if (isComplete)
            isSmallWindowSize();
    }

    Component.onCompleted: {
        isComplete = true;
        isSmallWindowSize();
        MainViewModel.MainWindowHeight = height;
    }

    Rectangle {
        anchors.fill: parent
        color: "white"
        border.color: Style.WindowBorderColor
        border.width: Style.BorderWidth

        // All items share one tool tip.
        ToolTip.toolTip.font.family: Style.LetterFontFamily
        ToolTip.toolTip.font.pointSize: Style.ToolTipTextFontSize
        ToolTip.toolTip.palette.toolTipText: Style.TextDarkColor
        // The style's own background takes no palette from here.
        ToolTip.toolTip.background: Rectangle {
            color: Style.ToolTipBackgroundColor
            border.color: Style.BordersColor
        }

        GridLayout {
            anchors.fill: parent
            columns: 2
            rowSpacing: 0
            columnSpacing: 0

            Item {
                Layout.row: 0
                Layout.column: 0
                Layout.fillHeight: true
                Layout.preferredWidth: MainViewModel.SmallWindowSize ? 0 : Style.MainMenuWidth

                MainMenu {
                    anchors.fill: parent
                    visible: !MainViewModel.SmallWindowSize
                }

                Drawer {
                    id: menuDrawer

                    objectName: "menuDrawer"
                    modal: false
                    interactive: false
                    edge: Qt.LeftEdge
                    closePolicy: Popup.NoAutoClose
                    width: smallMainMenu.implicitWidth
                    height: mainWindow.height - bottomRow.height
                    position: MainViewModel.SmallWindowSize ? 1 : 0
                    visible: MainViewModel.SmallWindowSize
                    padding: 0
                    background: Rectangle {
                        color: Style.BoxBackgroundColor
                    }

                    onActiveFocusChanged: {
                        if (!activeFocus)
                            MainViewModel.PageMenuExpanded = false;
                    }

                    SmallMainMenu {
                        id: smallMainMenu

                        anchors.fill: parent
                    }
                }
            }

            Item {
                Layout.row: 0
                Layout.column: 1
                Layout.fillWidth: true
                Layout.fillHeight: true
                Layout.margins: 10
                Layout.bottomMargin: 0
                Layout.leftMargin: MainViewModel.SmallWindowSize ? Style.SmallMainMenuClosedWidth + 10 : 10
                Layout.rightMargin: MainViewModel.SmallWindowSize ? Style.SmallMainMenuClosedWidth + 10 : 10

                Loader {
                    id: pageLoader

                    objectName: "pageLoader"
                    anchors.fill: parent
                    active: !MainViewModel.LoaderSourceChanging
                    source: MainViewModel.LoaderSource
                    focus: true
                }

                MouseArea {
                    anchors.fill: parent
                    onPressed: {
                        MainViewModel.PageMenuExpanded = false;
                        MainViewModel.ParameterMenuExpanded = false;
                        mouse.accepted = false;
                    }
                }
            }

            RowLayout {
                id: bottomRow

                Layout.row: 1
                Layout.column: 0
                Layout.columnSpan: 2
                Layout.fillWidth: true
                spacing: 0

                SettingsBar {
                    Layout.preferredWidth: Style.MainMenuWidth
                    Layout.preferredHeight: Style.StatusBarHeight
                    iconSize: 23
                    visible: !MainViewModel.SmallWindowSize
                }

                SettingsBar {
                    namePrefix: "small"
                    Layout.preferredWidth: Style.SmallMainMenuExpandedWidth
                    Layout.preferredHeight: Style.StatusBarHeight
                    iconSize: 30
                    visible: MainViewModel.SmallWindowSize
                }

                StatusBar {
                    Layout.fillWidth: true
                    Layout.preferredHeight: Style.StatusBarHeight
                    onOpenLogMessage: logDialog.open()
                }
            }
        }
    }

    SceneKeeper {
        id: sceneKeeper
    }

    LogDialog {
        id: logDialog

        anchors.centerIn: parent
    }
}
