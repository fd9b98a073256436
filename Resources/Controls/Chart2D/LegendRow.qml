// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import ".."

// A series in a chart's legend: a swatch that is filled while the series shows, and its name in its colour.
Item {
    id: row

    property int number: 0
    property string seriesName: ""
    property color seriesColor: "black"
    property bool shown: true
    property bool checked: true
    property bool bold: false

    signal toggled
    signal entered
    signal exited

    objectName: "legendRow" + number
    implicitHeight: 22
    activeFocusOnTab: true
    Accessible.role: Accessible.CheckBox
    Accessible.name: seriesName
    Accessible.checkable: true
    Accessible.checked: checked
    Accessible.onToggleAction: toggled()
    Keys.onSpacePressed: toggled()

    Rectangle {
        id: swatch

        objectName: "legendSwatch" + row.number
        anchors.verticalCenter: parent.verticalCenter
        width: 15
        height: 15
        radius: 2
        color: row.shown ? row.seriesColor : "transparent"
        border.color: row.seriesColor
        border.width: row.activeFocus ? 2 : 1
    }

    KXCLabel {
        anchors.verticalCenter: parent.verticalCenter
        anchors.left: swatch.right
        anchors.leftMargin: 5
        anchors.right: parent.right
        text: row.seriesName
        textColor: row.seriesColor
        bold: row.bold
        wrapMode: Text.NoWrap
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onPressed: {
            // A finger does not hover.
            if (mouse.source !== Qt.MouseEventNotSynthesized)
                hoverEnabled = false;
            row.toggled();
        }
        onEntered: {
            if (hoverEnabled)
                row.entered();
        }
        onExited: row.exited()
    }
}
