// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import "../../Controls"
import "../../Utils/Style.js" as Style

// The head of a parameter box. A press on it, or Space or Return, toggles `expanded`.
MouseArea {
    id: boxTitle

    property string title: ""
    property bool expanded: true
    // For boxes that open upwards.
    property bool invertArrow: false

    function toggle() {
        expanded = !expanded;
    }

    implicitHeight: 35
    height: 35
    cursorShape: Qt.PointingHandCursor
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: title
    Accessible.focusable: true
    Accessible.onPressAction: toggle()
    Keys.onSpacePressed: toggle()
    Keys.onReturnPressed: toggle()
    Keys.onEnterPressed: toggle()
    onClicked: toggle()

    Rectangle {
        anchors.fill: parent
        color: "transparent"
        border.width: boxTitle.activeFocus ? 2 : 0
        border.color: Style.TextFieldFocusBorder
    }

    KXCLabel {
        anchors.left: parent.left
        anchors.right: arrow.left
        anchors.leftMargin: 10
        anchors.rightMargin: 5
        anchors.verticalCenter: parent.verticalCenter
        text: boxTitle.title
        pointSize: 12
        fontSizeMode: Text.HorizontalFit
        minimumPointSize: 9
        capitalization: Font.AllUppercase
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        Accessible.ignored: true
    }

    Image {
        id: arrow

        objectName: boxTitle.objectName + "Arrow"
        anchors.right: parent.right
        anchors.rightMargin: 10
        anchors.verticalCenter: parent.verticalCenter
        source: boxTitle.expanded !== boxTitle.invertArrow ? "qrc:///Resources/Images/ArrowUp.svg" : "qrc:///Resources/Images/ArrowDown.svg"
        sourceSize: Qt.size(14, 14)
    }
}
