// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 1.4
import QtQuick.Controls.Styles 1.4
import "../Utils/Style.js" as Style

// A table over a model that publishes by role.
TableView {
    id: table

    readonly property Item focusFrame: Rectangle {
        parent: table
        anchors.fill: parent
        z: 2
        color: "transparent"
        border.width: 2
        border.color: Style.TextFieldFocusBorder
        visible: table.activeFocus
    }

    alternatingRowColors: true
    frameVisible: false
    activeFocusOnTab: true
    Accessible.role: Accessible.Table

    // No rows in store: those are made asynchronously, and a table that is destroyed meanwhile, its model before it,
    // writes a warning to the log.
    Component.onCompleted: flickableItem.cacheBuffer = 0

    style: TableViewStyle {
        backgroundColor: Style.BackgroundColor
        transientScrollBars: false
        handleOverlap: 0

        corner: Rectangle {
            color: Style.lightColor
        }

        scrollBarBackground: Rectangle {
            implicitWidth: Style.ParametersScrollBarWidth
            implicitHeight: Style.ParametersScrollBarWidth
            color: Style.lightColor
        }

        handle: Item {
            implicitWidth: Style.ParametersScrollBarWidth
            implicitHeight: Style.ParametersScrollBarWidth

            Rectangle {
                anchors.fill: parent
                anchors.margins: 2
                radius: 3
                color: styleData.pressed ? Style.TextDarkColor : styleData.hovered ? Style.TextLightColor : Style.UndefinedState
            }
        }

        incrementControl: Item {
        }

        decrementControl: Item {
        }
    }

    rowDelegate: Rectangle {
        height: Style.TableRowHeight
        color: styleData.selected ? Style.SelectedRowColor : styleData.alternate ? Style.AltRowColor : Style.RowColor
    }

    headerDelegate: Rectangle {
        height: Style.TableRowHeight
        color: Style.darkColor

        KXCLabel {
            anchors.fill: parent
            text: styleData.value
            pointSize: Style.TableTextSize
            bold: true
            horizontalAlignment: Text.AlignHCenter
            verticalAlignment: Text.AlignVCenter
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
        }

        Rectangle {
            anchors.right: parent.right
            width: Style.BorderWidth
            height: parent.height
            color: Style.BordersColor
        }
    }
}
