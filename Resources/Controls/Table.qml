// SPDX-License-Identifier: GPL-3.0-or-later
import QtQuick 2.15
import QtQuick.Controls 1.4
import "../Utils/Style.js" as Style

// A table over a model that publishes by role.
TableView {
    id: table

    alternatingRowColors: true
    frameVisible: false
    backgroundVisible: true
    activeFocusOnTab: true
    Accessible.role: Accessible.Table

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
